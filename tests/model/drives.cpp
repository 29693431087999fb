// Physical drives.

#include <cerrno>
#include <cstring>

#include "model/dump.h"
#include "model/kinds.h"
#include "model/raid.h"

namespace model {
namespace drive_model {

constexpr char kStore[] = "/var/storphydrive_info";
constexpr char kListMarker[] = "/var/mctool_pddebug";
constexpr char kRetrieval[] = "get_store_phydrives";
constexpr uint32_t kHeader = 20;
constexpr uint32_t kRecord = 453;

const std::vector<Number> kNumbers = {{4, 2},   {6, 2},   {8, 4},   {12, 4},  {16, 4},  {21, 2},  {23, 8},
                                      {31, 8},  {39, 8},  {269, 8}, {277, 8}, {109, 4}, {113, 4}, {119, 4},
                                      {123, 4}, {232, 4}, {236, 4}, {242, 4}, {246, 4}, {252, 4}, {256, 4},
                                      {128, 4}, {285, 2}, {352, 8}, {360, 8}, {369, 8}};

const std::vector<Line> kLinesToLogicalId = {
    {0, As::kU8, "PhyDrive Controller index = %d\n"},
    {1, As::kU8, "PhyDrive slot num = %d\n"},
    {2, As::kU8, "LSI Drive Num = %d\n"},
    {3, As::kU8, "Power State = %d (0: Active, 1: Powersave, 2: Transitioning\n"},
    {4, As::kU16, "device_id = %d\n"},
    {6, As::kU16, "enclosure_device_id = %d\n"},
    {8, As::kU32, "Media Err Count = %d\n"},
    {12, As::kU32, "Other Err Count = %d\n"},
    {16, As::kU32, "Predictive Failure Count = %d\n"},
    {20, As::kBool, "Disabled for removal = %s\n"},
    {21, As::kU16, "Block Size = %d\n"},
    {23, As::kU64, "Raw Size = %lld\n"},
    {31, As::kU64, "Non-coerced size = %lld\n"},
    {39, As::kU64, "Coerced Size = %lld\n"},
};

const std::vector<Line> kLinesToTemperature = {
    {261, As::kDigits, "Enclosure Logical ID = 0x%s\n"},
    {269, As::kU64, "Enclosure SAS Address[0] = 0x%llx\n"},
    {277, As::kU64, "Enclosure SAS Address[1] = 0x%llx\n"},
    {47, As::kU8, "Link speed = %d (0: UnKnown, 1: 1.5GB, 2: 3GB, 3: 6GB, 4: 12GB)\n"},
    {360, As::kU64, "Power On Hours   = %lld\n"},
    {352, As::kU64, "Powercycle Count = %lld\n"},
    {368, As::kU8, "Percentage Life  = %d\n"},
    {369, As::kU64, "Wear Status Days = %lld\n"},
    {288, As::kText, "Status Desc      = %s\n"},
    {48, As::kU8, "Device type = %d (0: disk 1: SSD)\n"},
    {49, As::kU8, "Interface Type = %d (0: UNK, 1: Sata, 2: SAS)\n"},
    {50, As::kText, "Product ID = %s\n"},
    {67, As::kText, "vendor = %s\n"},
    {76, As::kText, "Firmware = %s\n"},
    {81, As::kText, "Serial Num = %s\n"},
    {102, As::kU8, "Status = %d\n"},
    {103, As::kBool, "Fault = %s\n"},
    {104, As::kBool, "Online = %s\n"},
    {105, As::kBool, "Temp valid = %s\n"},
};

const std::vector<Line> kLinesFromProgress = {
    {107, As::kU8, "rebuild_operation_progress status = %d\n"},
    {108, As::kS8, "rebuild_operation_progress percent complete = %d\n"},
    {109, As::kU32, "rebuild_operation_progress start timestamp = 0x%x\n"},
    {113, As::kU32, "rebuild_operation_progress end timestamp = 0x%x\n"},
    {117, As::kU8, "copyback_operation_progress status = %d\n"},
    {118, As::kS8, "copyback_operation_progress percent complete = %d\n"},
    {119, As::kU32, "copyback_operation_progress start timestamp = 0x%x\n"},
    {123, As::kU32, "copyback_operation_progress end timestamp = 0x%x\n"},
    {230, As::kU8, "patrol_read_operation_progress_v7 status = %d\n"},
    {231, As::kS8, "patrol_read_operation_progress_v7 percent complete = %d\n"},
    {232, As::kU32, "patrol_read_operation_progress_v7 start timestamp = 0x%x\n"},
    {236, As::kU32, "patrol_read_operation_progress_v7 end timestamp = 0x%x\n"},
    {240, As::kU8, "clear_operation_progress_v7 status = %d\n"},
    {241, As::kS8, "clear_operation_progress_v7 percent complete = %d\n"},
    {242, As::kU32, "clear_operation_progress_v7 start timestamp = 0x%x\n"},
    {246, As::kU32, "clear_operation_progress_v7 end timestamp = 0x%x\n"},
    {250, As::kU8, "erase_operation_progress_v7 status = %d\n"},
    {251, As::kS8, "erase_operation_progress_v7 percent complete = %d\n"},
    {252, As::kU32, "erase_operation_progress_v7 start timestamp = 0x%x\n"},
    {256, As::kU32, "erase_operation_progress_v7 end timestamp = 0x%x\n"},
    {127, As::kBool, "Boot drive = %s\n"},
    {287, As::kBool, "Transport Ready = %s\n"},
    {128, As::kU32, "Mod timestamp = %d\n"},
    {132, As::kText, "product_id_v3 = %s\n"},
    {229, As::kU8, "locator_state_v7 = %d\n"},
    {285, As::kU16, "Physical block Size = %d\n"},
    {377, As::kU8, "PD SED state = 0x%x\n"},
    {378, As::kText, "PD Error=   %s\n"},
    {442, As::kU8, "Extended Status = %d\n"},
    {443, As::kU8, "State = %d\n"},
    {444, As::kText, "firmware_v37 = %s\n"},
};

struct Drive {
  uint8_t controller;
  uint8_t slot;
  std::string serial;
  uint64_t stamp;

  explicit Drive(const Bytes &record)
      : controller(record[0]),
        slot(record[1]),
        serial(text(record.slice(81, 21))),
        stamp(little_endian(record, 128, 4)) {}
  bool is(const Drive &other) const {
    return controller == other.controller && slot == other.slot && serial == other.serial;
  }
};

// The first entry with the drive's identity.
const Drive *find(const std::vector<Drive> &list, const Drive &drive) {
  for (const Drive &entry : list)
    if (entry.is(drive)) return &entry;
  return nullptr;
}

class Drives : public Model {
 public:
  using Model::Model;

  int32_t call(const std::string &entry_point, tests::HostReplyBuffer *buffer, uint32_t *length) override {
    const bool is_full = entry_point == "mc_get_store_phydrives";
    if (!buffer) {
      if (!is_full) *length = 0;
      world.trace(entry_point, is_full ? 1537 : 1635, "buf is NULL\n");
      return kUnavailable;
    }
    Reply reply{*buffer};
    return is_full && world.exists(kSimulationMarker) ? simulate(reply, length) : retrieve(reply, length, !is_full);
  }

 private:
  int32_t retrieve(Reply &reply, uint32_t *length, bool is_delta) {
    *length = 0;
    LockedFile file = lock_and_open(world, kStore);
    if (file.status != 0) return file.status;
    const int32_t status = read(reply, length, is_delta, file);
    unlock_and_close(world);
    return status;
  }

  int32_t read(Reply &reply, uint32_t *length, bool is_delta, LockedFile &file) {
    if (is_delta && file.facts.modified == saved_time_) return 0;
    saved_time_ = file.facts.modified;
    const Bytes announced_bytes = world.read(*file.stream, 4);
    if (announced_bytes.size() < 4) return kNoData;
    const auto announced = static_cast<uint32_t>(little_endian(announced_bytes, 0, 4));

    const uint32_t required = static_cast<uint32_t>(file.facts.size) + announced * kRecord + kHeader;
    if (required > reply.size && !reply.grow(required, required)) return too_large(required, reply);
    if (kHeader > reply.size) return too_large(kHeader, reply);
    reply.put(0, tests::big_endian().u8(0x28).u16(0).u16(announced & 0xFFFF).u16(0).u32(kRecord).u8(0));

    // As many entries as the announced number has with its two bytes exchanged; of none, there is nothing to fail.
    if (!has_lists_) {
      const bool asks_for_memory = (announced & 0xFFFF) != 0;
      for (const char *list : {"cur", "cached"})
        if (!world.works("calloc") && asks_for_memory) {
          world.trace(kRetrieval, *list == 'c' && list[1] == 'u' ? 1405 : 1415,
                      printed("%s_pd_list memory allocation failed\n", list));
          return kUnavailable;
        }
      has_lists_ = true;
    }

    std::vector<Drive> cur;
    uint32_t count = 0;
    while (true) {
      const size_t left = std::min<size_t>(file.stream->content.size() - file.stream->position, kRecord);
      const uint32_t end = kHeader + count * kRecord + static_cast<uint32_t>(left);
      if (end > reply.size) return too_large(end, reply);
      const Bytes record = world.read(*file.stream, kRecord);
      reply.put(kHeader + count * kRecord, record);
      if (record.size() < kRecord) break;
      dump_record(world, text_of_drive(record));
      cur.emplace_back(record);
      if (is_delta) {
        const Drive *const known = find(cached_, cur.back());
        if (known && known->stamp == cur.back().stamp) continue;
      }
      reply.put(kHeader + count * kRecord, in_network_order(record, kNumbers));
      count_record(reply, &count);
    }
    if (!file.stream->at_end)
      world.trace(kRetrieval, 1495, printed("Error reading file %s, %s\n", kStore, strerror(world.error())));

    dump(cur, "cur_list");
    dump(cached_, "cached_list");
    if (is_delta && !add_gone(reply, cur, &count)) return kTooLarge;
    cached_ = cur;
    dump(cached_, "After cached_list");
    if (!is_delta || count > 0) *length = kHeader + count * kRecord;
    reply.put(5, tests::big_endian().u16(count));
    return 0;
  }

  bool add_gone(Reply &reply, const std::vector<Drive> &cur, uint32_t *count) {
    std::vector<Drive> gone;
    for (const Drive &drive : cached_)
      if (!find(cur, drive)) gone.push_back(drive);
    const uint32_t needed = kHeader + (*count + static_cast<uint32_t>(gone.size())) * kRecord;
    if (needed > reply.size && !reply.grow_and_keep(needed, needed)) return too_large(needed, reply) == 0;
    for (const Drive &drive : gone) {
      const uint32_t at = kHeader + *count * kRecord;
      reply.put(at, tests::big_endian().u8(drive.controller).u8(drive.slot));
      reply.put(at + 81, tests::big_endian().text(drive.serial, 21));
      reply.put(at + 102, tests::big_endian().u8(14));
      count_record(reply, count);
    }
    return true;
  }

  // While the call runs, the header's count has the order of this machine.
  static void count_record(Reply &reply, uint32_t *count) { reply.put(5, tests::little_endian().u16(++*count)); }

  int32_t too_large(uint32_t needed, const Reply &reply) {
    trace_too_large(world, kRetrieval, 1386, needed, reply.size);
    return kTooLarge;
  }

  void dump(const std::vector<Drive> &list, const std::string &title) {
    std::vector<std::string> serials;
    for (const Drive &drive : list) serials.push_back(drive.serial);
    dump_list(world, kListMarker, title, serials);
  }

  // --------------------------------------------------------------------------------------------- simulation

  int32_t simulate(Reply &reply, uint32_t *length) {
    constexpr uint32_t kAnnounced = kHeader + 2 * kRecord;
    *length = kAnnounced;
    if (kAnnounced > reply.size && !reply.grow(kAnnounced, kAnnounced)) {
      trace_too_large(world, "mc_get_store_phydrives", 1554, kAnnounced, reply.size);
      *length = 0;
      return kTooLarge;
    }
    reply.put(0, Bytes::hex("28 00 01 02 00 02 00 C5 01 00 00 00"));
    for (uint32_t i = 0; i < 3; ++i) put_simulated(reply, kHeader + i * kRecord);  // one more than announced
    return 0;
  }

  static void put_simulated(Reply &reply, uint32_t at) {
    const auto put = [&](uint32_t offset, const char *digits) { reply.put(at + offset, Bytes::hex(digits)); };
    put(0, "01 01 01 00 01 00 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 10");
    for (const uint32_t size : {23u, 31u, 39u}) put(size, "00 00 00 40 00 00 00 00");
    put(47, "03 01 02");
    reply.put(at + 50, tests::big_endian().text("ST3300657SS", 12));
    reply.put(at + 67, tests::big_endian().text("SEAGATE", 8));
    reply.put(at + 76, tests::big_endian().text(" ", 2));
    reply.put(at + 81, tests::big_endian().text("6SJ3E0QY", 9));
    put(102, "00 00 01 00 00");
    for (const uint32_t progress : {107u, 117u, 230u, 240u, 250u}) put(progress, "00 FF FF FF FF FF FF FF FF FF");
    put(127, "00");
    put(285, "00 10 00");
    put(377, "00");
  }

  int64_t saved_time_ = 0;
  bool has_lists_ = false;
  std::vector<Drive> cached_;
};

Bytes store_file(Choices &choices) {
  const uint32_t records = choices.below(8);
  Bytes file = tests::little_endian().u32(
      choices.one_in(4) ? choices.one_of<uint32_t>({0, 256, 65536, 70000, 0xFFFFFFFF}) : records);
  for (uint32_t i = 0; i < records; ++i) {
    Bytes record = choices.bytes(kRecord);
    if (!choices.one_in(8)) {
      record.put(0, tests::little_endian().u8(choices.below(2)).u8(choices.below(3)));
      record.put(81, tests::little_endian().text(choices.one_of({"", "A", "B", "a serial of 21 bytes!"}), 21));
    }
    record.put(128, tests::little_endian().u32(choices.below(3)));
    file += record;
  }
  return file;
}

}  // namespace drive_model

std::string text_of_drive(const Bytes &record) {
  using namespace drive_model;
  return "\n\n\nPhysical Drive ===================**************===============\n\n\n" +
         dumped(record, kLinesToLogicalId) +
         "Enclosure Association = " + (record[260] == 1 ? "Direct Attached" : "Expander Attached") + "\n" +
         dumped(record, kLinesToTemperature) +
         (record[105] != 0 ? printed("Temperature = %d\n", record[106]) : std::string()) +
         dumped(record, kLinesFromProgress);
}

Kind drives() {
  using namespace drive_model;
  return {.name = "drives",
          .entry_points = {"mc_get_store_phydrives", "mc_delta_store_phydrives"},
          .files = {{kRaidLock, lock_file}, {kStore, store_file}},
          .markers = {kSimulationMarker, kRecordMarker, kListMarker},
          .faults = {{"fopen", 4, EMFILE, false},
                     {"fopen", 1, ENOENT, false},
                     {"fileno", 1, EBADF, false},
                     {"flock", 2, EINTR, false},
                     {"stat", 8, EACCES, false},
                     {"fread", 8, EIO, false},
                     {"calloc", 2, ENOMEM, false}},
          .model = make_model<Drives>,
          .overrunning = kSimulationMarker};
}

}  // namespace model
