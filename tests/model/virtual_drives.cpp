// Virtual drives.

#include <cerrno>
#include <cstring>

#include "model/dump.h"
#include "model/kinds.h"
#include "model/raid.h"
#include "model/summary_lists.h"

namespace model {
namespace virtual_drive_model {

constexpr char kStore[] = "/var/storvirtdrive_info";
constexpr char kListMarker[] = "/var/mctool_vddebug";
constexpr char kRetrieval[] = "get_store_virtdrives";
constexpr uint32_t kHeader = 17;
constexpr uint32_t kRecord = 5799;

// Converted before it is decided whether the record is sent, and after it.
const std::vector<Number> kNumbersOfAll = {{60, 2},   {5225, 4}, {5229, 4}, {5235, 4},
                                           {5239, 4}, {5245, 4}, {5249, 4}, {5254, 4}};
const std::vector<Number> kNumbersOfSent = {{52, 8}, {62, 4}, {5215, 8}, {5770, 8}, {5778, 8}, {5786, 8}, {5794, 4}};

struct HotSpare {
  size_t at;
  explicit HotSpare(int i) : at(95 + 20 * static_cast<size_t>(i)) {}
};

Bytes as_sent(const Bytes &record) {
  std::vector<Number> numbers = kNumbersOfSent;
  for (int i = 0; i < record[94]; ++i) {
    numbers.push_back({HotSpare(i).at + 3, 8});
    numbers.push_back({HotSpare(i).at + 11, 8});
  }
  return in_network_order(record, numbers);
}

const std::vector<Line> kLinesToMembers = {
    {0, As::kU8, "Controller index = %d\n"},
    {1, As::kU8, "Target ID = %d\n"},
    {2, As::kText, "GUID = %s\n"},
    {35, As::kText, "Name = %s\n"},
    {51, As::kU8, "Status = %d (0: optimal, 1: cacheDegraded, 2:Partially degraded, 3:Degraded 4:OFFLine 5:UNK\n"},
    {52, As::kU64, "Size = %lld\n"},
    {60, As::kU16, "Raid Level = 0x%x\n"},
    {62, As::kU32, "Strip size = %d\n"},
    {66, As::kU8, "Drive per span = %d\n"},
    {67, As::kU8, "Span Depth = %d\n"},
    {68, As::kU8, "Access policy = %d (0:RW, 1:UNK, 2:RO, 3:Blocked)\n"},
    {69, As::kU8, "IO Policy = %d (0:Direct 1:Cached)\n"},
    {70, As::kU8, "Read ahead policy = %d (0:Ahead 1:Normal)\n"},
    {71, As::kU8, "Current write cache policy = %d (0:UNK, 3:WB-Bad-BBU, 2:WriteBack 1:WriteThru)\n"},
    {72, As::kU8, "Requested write cache policy = %d (0:UNK, 3:WB-Bad-BBU, 2:WriteBack 1:WriteThru)\n"},
    {73, As::kU8, "Drive cache policy = %d (0:Unchanged, 1:Enable, 2:Disable\n"},
    {74, As::kBool, "Allow background init: %s\n"},
    {75, As::kBool, "Auto Snapshot: %s\n"},
    {76, As::kBool, "Auto delete oldest: %s\n"},
    {77, As::kU8, "Num of physical drives =%d\n"},
};

const std::vector<Line> kNumberOfHotSpares = {{94, As::kU8, "Num of hot spare drives =%d\n"}};

const std::vector<Line> kLinesFromRemainingSpace = {
    {5215, As::kU64, "Remaining space = %lld\n"},
    {5223, As::kU8, "Reconstruction status = %d\n"},
    {5224, As::kU8, "Reconstruction percent complete = %d\n"},
    {5225, As::kU32, "Reconstruction start timestamp = %d\n"},
    {5229, As::kU32, "Reconstruction end timestamp = %d\n"},
    {5233, As::kU8, "Consistency chk opn progress status = %d\n"},
    {5234, As::kU8, "Consistency chk opn progress percent complete = %d\n"},
    {5235, As::kU32, "Consistency chk opn progress start timestamp = %d\n"},
    {5239, As::kU32, "Consistency chk opn progress end timestamp = %d\n"},
    {5243, As::kU8, "Init opn progress status = %d\n"},
    {5244, As::kU8, "Init opn progress percent complete = %d\n"},
    {5245, As::kU32, "Init opn progress start timestamp = %d\n"},
    {5249, As::kU32, "Init opn progress end timestamp = %d\n"},
    {5253, As::kBool, "Boot drive: %s\n"},
    {5254, As::kU32, "Mod timestamp = %d\n"},
    {5770, As::kU64, "start_block_v12 = %lld (0x%llx)\n"},
    {5778, As::kU64, "span_block_count_v12 = %lld (0x%llx)\n"},
    {5786, As::kU64, "smallest_pd_block_count_v12 = %lld (0x%llx)\n"},
    {5794, As::kU32, "pd_block_size_v12 = %d (0x%x)\n"},
    {5798, As::kU8, "VD SED state = 0x%x\n"},
};

std::string member_drives(const Bytes &record, const char *name, size_t at, int most) {
  std::string lines;
  for (int i = 0; i < record[77] && i < most; ++i, at += 2) {
    lines += printed("%s[%d].controller_index = %d\n", name, i, record[at]);
    lines += printed("%s[%d].slot_number = %d\n", name, i, record[at + 1]);
  }
  return lines;
}

std::string hot_spare(const Bytes &record, int i) {
  const size_t at = HotSpare(i).at;
  const auto block = [&](size_t offset) { return static_cast<long long>(little_endian(record, at + offset, 8)); };
  return printed("HotSpare[%d].controller_index = %d\n", i, record[at]) +
         printed("HotSpare[%d].slot_number = %d\n", i, record[at + 1]) +
         printed("HotSpare[%d].span = %d\n", i, record[at + 2]) +
         printed("HotSpare[%d].starting block = %lld\n", i, block(3)) +
         printed("HotSpare[%d].number of blocks = %lld\n", i, block(11)) +
         printed("HotSpare[%d].slot_number = %d\n", i, record[at + 19]);
}

// What is kept of a virtual drive: its GUID alone says which one it is.
struct Drive {
  uint8_t controller;
  uint8_t target;
  std::string guid;
  std::string name;
  uint64_t stamp;

  explicit Drive(const Bytes &record)
      : controller(record[0]),
        target(record[1]),
        guid(text(record.slice(2, 33))),
        name(text(record.slice(35, 16))),
        stamp(little_endian(record, 5254, 4)) {}

  // A GUID without a NUL runs on into the name.
  std::string in_a_list() const {
    return printed("[%s]-[%s%s] mod_timestamp=%d\n", name.c_str(), guid.c_str(), guid.size() == 33 ? name.c_str() : "",
                   static_cast<int>(stamp));
  }
};

// The first entry with the drive's GUID.
const Drive *find(const std::vector<Drive> &list, const Drive &drive) {
  for (const Drive &entry : list)
    if (entry.guid == drive.guid) return &entry;
  return nullptr;
}

class VirtualDrives : public Model {
 public:
  using Model::Model;

  int32_t call(const std::string &entry_point, tests::HostReplyBuffer *buffer, uint32_t *length) override {
    const bool is_full = entry_point == "mc_get_store_virtdrives";
    if (!buffer) {
      if (!is_full) *length = 0;
      world.trace(entry_point, is_full ? 2006 : 2096, "buf is NULL\n");
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
    const auto ended = [this](int32_t status) {
      unlock_and_close(world);
      return status;
    };

    if (is_delta && file.facts.modified == saved_time_) return ended(0);
    saved_time_ = file.facts.modified;
    const auto in_file = static_cast<uint32_t>(file.facts.size / kRecord);
    if (lists_.cached_count != 0 && in_file == 0)
      world.trace(kRetrieval, 1796, printed("number of virt-drives= 0, prev_num_drives= %u\n", lists_.cached_count));
    const std::string failed = lists_.make(world, in_file);
    if (!failed.empty()) {
      world.trace(kRetrieval, failed == "cur" ? 1806 : 1817,
                  printed("%s_vd_list memory allocation failed, %s\n", failed.c_str(), strerror(ENOMEM)));
      return ended(kUnavailable);
    }

    dump(lists_.cached, "cached_VD_list before computing deleted drives.");
    read_summaries(*file.stream);
    dump(lists_.cur, "cur_VD_list before computing deleted drives.");
    const std::vector<Drive> gone = gone_drives();

    const uint32_t required =
        static_cast<uint32_t>(file.facts.size) + static_cast<uint32_t>(gone.size()) * kRecord + kHeader;
    const uint32_t passed = reply.size;
    if (required > passed && !reply.grow(required, passed)) {
      trace_too_large(world, kRetrieval, 1875, reply.size, passed);
      return ended(kTooLarge);
    }
    reply.put(0, Bytes::hex("28 00 08 00 00 00 16 A7 00"));

    uint32_t count = 0;
    read_records(reply, *file.stream, is_delta, &count);
    unlock_and_close(world);

    dump(lists_.cur, "cur_VD_list");
    if (is_delta)
      for (const Drive &drive : gone) add_gone(reply, drive, &count);
    lists_.exchange();
    dump(lists_.cached, "After swap, cached_VD_list");
    if (!is_delta || count > 0) *length = kRecord * count + kHeader;
    return 0;
  }

  void read_summaries(Stream &stream) {
    while (true) {
      const Bytes record = world.read(stream, kRecord);
      if (record.size() < kRecord) return;
      if (!lists_.exist()) {
        world.trace(kRetrieval, 1839,
                    "cur_vd_list= " + printed_pointer(lists_.cur) +
                        ", cached_vd_list= " + printed_pointer(lists_.cached) + "\n");
        return;
      }
      lists_.cur->emplace_back(record);
    }
  }

  void read_records(Reply &reply, Stream &stream, bool is_delta, uint32_t *count) {
    stream = {.content = stream.content};
    while (true) {
      const uint32_t at = kHeader + kRecord * *count;
      Bytes record = world.read(stream, kRecord);
      reply.put(at, record);
      if (record.size() < kRecord || !lists_.exist()) break;
      dump_record(world, text_of_virtual_drive(record));
      record = in_network_order(record, kNumbersOfAll);
      reply.put(at, record);
      // The record's stamp is in network order by now, the other one is not: so it is meant.
      const Drive drive(record);
      if (is_delta) {
        const Drive *const known = find(*lists_.cached, drive);
        if (known && known->stamp == drive.stamp) continue;
      }
      if (drive.guid == std::string(33, '0'))
        world.log("mcserver_storage.cpp", 1935,
                  printed("guidAllZeroes: ctlrIdx=%d, targetId=%d, guid=%s\n", drive.controller, drive.target,
                          text(record.slice(2, kRecord - 2)).c_str()));
      reply.put(at, as_sent(record));
      count_record(reply, count);
    }
    if (!stream.at_end)
      world.trace(kRetrieval, 1961, printed("Error reading file %s, %s\n", kStore, strerror(world.error())));
  }

  std::vector<Drive> gone_drives() const {
    std::vector<Drive> gone;
    if (!lists_.exist()) return gone;
    for (const Drive &drive : *lists_.cached)
      if (!find(*lists_.cur, drive)) gone.push_back(drive);
    return gone;
  }

  void add_gone(Reply &reply, const Drive &drive, uint32_t *count) {
    const uint32_t at = kHeader + kRecord * *count;
    reply.put(at, tests::big_endian().u8(drive.controller).u8(drive.target));
    reply.put(at + 2, tests::big_endian().text(drive.guid, 33).text(drive.name, 16).u8(6));
    const Bytes stale(std::vector<uint8_t>(reply.bytes + at + 5254, reply.bytes + at + 5258));
    world.log("mcserver_storage.cpp", 1744,
              printed("Deleted-Event VD TargetID=%d, name=%s mod_timestamp=%d\n", drive.target, drive.name.c_str(),
                      static_cast<int>(little_endian(stale, 0, 4))));
    count_record(reply, count);
  }

  static void count_record(Reply &reply, uint32_t *count) {
    *count = (*count + 1) % 256;
    reply.put(3, tests::big_endian().u8(*count));
  }

  void dump(const List<Drive> &list, const std::string &title) {
    if (!list || !world.exists(kListMarker)) return;
    std::string text = "\n " + title + " \n";
    for (const Drive &drive : *list) text += drive.in_a_list();
    world.append(std::string(kListMarker) + ".txt", text);
  }

  // --------------------------------------------------------------------------------------------- simulation

  int32_t simulate(Reply &reply, uint32_t *length) {
    constexpr uint32_t kAnnounced = kHeader + 2 * kRecord;
    *length = kAnnounced;
    if (kAnnounced > reply.size && !reply.grow(kAnnounced, kAnnounced)) {
      trace_too_large(world, "mc_get_store_virtdrives", 2023, kAnnounced, reply.size);
      *length = 0;
      return kTooLarge;
    }
    reply.put(0, Bytes::hex("28 00 08 02 A7 16 00 00 00"));
    for (int i = 0; i < 2; ++i) put_simulated(reply, i, kHeader + kRecord * static_cast<uint32_t>(i));
    return 0;
  }

  static void put_simulated(Reply &reply, int i, uint32_t at) {
    const auto put = [&](size_t offset, const char *digits) { reply.put(at + offset, Bytes::hex(digits)); };
    const auto put_text = [&](size_t offset, const std::string &text) {
      reply.put(at + offset, tests::big_endian().text(text, text.size() + 1));
    };
    put(0, "01 01");
    put_text(2, printed("GUID-%d", i));
    put_text(35, printed("VirtDrive-%d", i));
    put(51, "00  00 00 00 40 00 00 00 00  01 00  00 10 00 00  01 01  00 00 00  02 02  01  00 01 01");
    put(77, "02  01 01 01 01");
    put(94, "02");
    for (int spare = 0; spare < 2; ++spare)
      put(HotSpare(spare).at, "01 01 00  00 00 00 00 00 00 00 00  00 10 00 00 00 00 00 00  00");
    put(5215, "00 00 00 00 00 00 00 00  00 FF  FF FF FF FF  FF FF FF FF");
    put(5253, "00");
    put(5798, "00");
  }

  int64_t saved_time_ = 0;
  SummaryLists<Drive> lists_;
};

Bytes store_file(Choices &choices) {
  const std::string zeros(33, '0');
  const auto records = choices.one_of({1u, 2u, 1u, 0u, 3u, 6u});  // sometimes more than ever before
  Bytes file;
  for (uint32_t i = 0; i < records; ++i) {
    Bytes record = choices.bytes(kRecord);
    if (!choices.one_in(8)) {
      const auto guid =
          choices.one_of<std::string>({"", "A", "B", "C", zeros, zeros.substr(1), "a GUID of thirty-three characters"});
      record.put(2, tests::little_endian().text(guid, 33));
      record.put(35, tests::little_endian().text(choices.one_of({"", "DATA", "sixteen of them!"}), 16));
    }
    record.put(77, tests::little_endian().u8(choices.one_of({0u, 1u, 8u, 9u, 255u})));
    record.put(94, tests::little_endian().u8(choices.one_in(8) ? 255 : choices.below(3)));
    // Some read the same in both orders of their bytes.
    record.put(5254, tests::little_endian().u32(choices.one_of({0u, 1u, 0x01000000u, 0x01000001u, 0xFFFFFFFFu})));
    file += record;
  }
  return file;
}

}  // namespace virtual_drive_model

std::string text_of_virtual_drive(const Bytes &record) {
  using namespace virtual_drive_model;
  std::string text = "\n\n\nVirtual Drive ===================**************===============\n\n\n" +
                     dumped(record, kLinesToMembers) + member_drives(record, "PD", 78, 8) +
                     member_drives(record, "PD_v5", 5258, 256) + dumped(record, kNumberOfHotSpares);
  for (int i = 0; i < record[94]; ++i) text += hot_spare(record, i);
  return text + dumped(record, kLinesFromRemainingSpace);
}

Kind virtual_drives() {
  using namespace virtual_drive_model;
  return {.name = "virtual_drives",
          .entry_points = {"mc_get_store_virtdrives", "mc_delta_store_virtdrives"},
          .files = {{kRaidLock, lock_file}, {kStore, store_file}},
          .markers = {kSimulationMarker, kRecordMarker, kListMarker},
          .faults = {{"fopen", 4, EMFILE, false},
                     {"fopen", 1, ENOENT, false},
                     {"fileno", 1, EBADF, false},
                     {"flock", 2, EINTR, false},
                     {"stat", 8, EACCES, false},
                     {"fread", 12, EIO, false},
                     {"realloc", 2, ENOMEM, false},
                     {"realloc", 2, ENOMEM, false},
                     {"realloc", 2, ENOMEM, false},
                     {"realloc", 2, EAGAIN, false},
                     {"malloc", 2, ENOMEM, false}},  // an index is done without
          .model = make_model<VirtualDrives>};
}

}  // namespace model
