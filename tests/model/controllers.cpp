// RAID controllers, and the platform that they are asked on.

#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "model/dump.h"
#include "model/kinds.h"
#include "model/raid.h"
#include "model/summary_lists.h"

namespace model {
namespace controller_model {

constexpr char kProductFile[] = "/etc/product";
constexpr char kListMarker[] = "/var/mctool_ctlrdebug";
constexpr char kSource[] = "mcserver_storage.cpp";
constexpr char kRetrieval[] = "get_store_ctrls";
constexpr uint32_t kHeader = 18;
constexpr uint32_t kRecord = 1294;
constexpr uint32_t kSlots = 256;  // the reply's count has 8 bits

const std::vector<Number> kNumbers = {{255, 2}, {257, 2}, {259, 2},  {261, 2}, {759, 2},  {766, 2}, {768, 2},
                                      {772, 2}, {807, 2}, {809, 2},  {890, 2}, {1292, 2}, {782, 4}, {818, 4},
                                      {822, 4}, {827, 4}, {1288, 4}, {790, 8}, {798, 8},  {834, 8}, {842, 8},
                                      {866, 8}, {874, 8}, {882, 8},  {892, 8}};

const std::vector<Line> kNames = {
    {1, As::kText, "controller: %s\n"},
    {17, As::kText, "smbios_pcislotname: %s\n"},
};

const std::vector<Line> kLinesToSmartError = {
    {0, As::kU8, "index: %d\n"},
    {23, As::kText, "product-name: %s\n"},
    {104, As::kBool, "is-supported: %s\n"},
    {105, As::kU8, "reason-not-supported: %d\n"},
    {106, As::kU8, "controller-status: %d (0:Optimal, 1:Unresponsive)\n"},
    {107, As::kText, "serial-number: %s\n"},
    {138, As::kText, "firmware-package-build: %s\n"},
    {235, As::kText, "vendor: %s\n"},
    {255, As::kU16, "vendor-id: 0x%x\n"},
    {257, As::kU16, "device-id: 0x%x\n"},
    {259, As::kU16, "subvendor-id: 0x%x\n"},
    {261, As::kU16, "subdevice-id: 0x%x\n"},
    {263, As::kText, "chip-revision: %s\n"},
    {266, As::kText, "mfg-date: %s\n"},
    {277, As::kText, "mfg-rework-date: %s\n"},
    {288, As::kText, "mfg-revision-num: %s\n"},
    {297, As::kText, "bios-version: %s\n"},
    {330, As::kText, "firmware-version: %s\n"},
    {363, As::kText, "preboot-cli-version: %s\n"},
    {396, As::kText, "webbios-version: %s\n"},
    {429, As::kText, "nvdata-version: %s\n"},
    {462, As::kText, "boot-block-version: %s\n"},
    {495, As::kText, "boot-version: %s\n"},
    {528, As::kText, "pending-bios-version: %s\n"},
    {561, As::kText, "pending-firmware-version: %s\n"},
    {594, As::kText, "pending-preboot-cli-version: %s\n"},
    {627, As::kText, "pending-webbios-version: %s\n"},
    {660, As::kText, "pending-nvdata-version: %s\n"},
    {693, As::kText, "pending-boot-block-version: %s\n"},
    {726, As::kText, "pending-boot-version: %s\n"},
    {759, As::kU16, "predictive-fail-poll-interval: %d sec\n"},
    {761, As::kU8, "rebuild-rate: %d\n"},
    {762, As::kU8, "patrol-read-rate: %d\n"},
    {763, As::kU8, "consistency-check-rate: %d\n"},
    {764, As::kU8, "reconstruction-rate: %d\n"},
    {765, As::kU8, "cache-flush-interval: %d\n"},
    {766, As::kU16, "spinup-drive-count: %d\n"},
    {768, As::kU16, "spinup-delay: %d\n"},
    {770, As::kU8, "coercion-mode: %d (0: None, 1: 128MB, 2: 1GB)\n"},
    {771, As::kBool, "cluster-enable: %s\n"},
    {772, As::kU16, "ecc-bucket-leak-rate: %d\n"},
    {774, As::kBool, "expose-enclosure-devices: %s\n"},
    {775, As::kBool, "maintain-pd-fail-history: %s\n"},
    {776, As::kBool, "maintain-pd-fail-history: %s\n"},
    {777, As::kBool, "enable-copyback-to-ssd-on-smart-error: %s\n"},
};

const std::vector<Line> kLinesFromSpinDown = {
    {779, As::kBool, "spin-down-unconfigured: %s\n"},
    {780, As::kBool, "enable-ssd-patrol-read: %s\n"},
    {781, As::kBool, "auto-enhanced-import: %s\n"},
    {782, As::kU32, "raid_levels_supported: 0x%x\n"},
    {786, As::kBool, "nvram-present: %s\n"},
    {787, As::kBool, "serial-debugger-present: %s\n"},
    {788, As::kBool, "memory-present: %s\n"},
    {789, As::kBool, "flash-present: %s\n"},
    {790, As::kU64, "memory-size: %lld bytes\n"},
    {798, As::kU64, "cache-memory-size: %lld bytes\n"},
    {806, As::kU8, "backend-port-count: %d\n"},
    {807, As::kU16, "memory-correctable-errors: %d\n"},
    {809, As::kU16, "memory-uncorrectable-errors: %d\n"},
    {811, As::kBool, "controller-temperature-sensor-present: %s\n"},
    {812, As::kBool, "ROC-temperature-sensor-present: %s\n"},
    {813, As::kBool, "drive-temperature-supported: %s\n"},
    {814, As::kU8, "controller-temperature: %d\n"},
    {815, As::kU8, "roc-temperature: %d\n"},
    {816, As::kU8,
     "patrol-read-operation-status: %d (0:unknown, 1:success, 2:active, 3:aborted, 4:suspended, 5:failed\n"},
    {817, As::kS8, "patrol-read-percent-complete: %d\n"},
    {818, As::kU32, "patrol-read-start-timestamp: 0x%x\n"},
    {822, As::kU32, "patrol-read-end-timestamp: 0x%x\n"},
    {826, As::kBool, "has-sas-expander: %s\n"},
    {827, As::kU32, "Mod timestamp = %d\n"},
    {831, As::kU8, "subOEM_v8: %d\n"},
    {832, As::kU8,
     "pinned-cache_state_v8: %d (0:unknown, 1:pinned-cache-present true, 2:pinned-cache-present false)\n"},
    {833, As::kU8, "controller_type_v9: %d \n"},
    {834, As::kU64, "supported_strip_sizes: %llx \n"},
    {842, As::kU64, "default_strip_size: %llx \n"},
    {850, As::kText, "smbios_pcislotname_ext: '%s' \n"},
    {866, As::kU64, "supported_ctlr_ops: 0x%llx\n"},
    {874, As::kU64, "supported_phys_ops: 0x%llx\n"},
    {882, As::kU64, "supported_virt_ops: 0x%llx\n"},
    {890, As::kU16, "supported_bbu_ops: 0x%x\n"},
    {892, As::kU64, "valid controller attrs: 0x%llx\n"},
    {900, As::kText, "controller-status-description: %s\n"},
    {964, As::kU8, "drive-life-used-percent: %d\n"},
    {965, As::kU8, "controller-sed-status: 0x%x\n"},
    {1222, As::kU8, "performance-percent: %d\n"},
    {1223, As::kText, "controller-error_v22: %s\n"},
    {1287, As::kU8, "JBOD Mode: %d\n"},
    {1288, As::kU32, "Max Virtual Drives per Controller = %d\n"},
    {1292, As::kU16, "life-left-in-days:%d\n"},
};

struct Controller {
  uint8_t index;
  std::string name;
  std::string serial;
  std::vector<uint64_t> ids;  // vendor, device, subvendor and subdevice
  uint8_t type;
  int32_t stamp;

  explicit Controller(const Bytes &record)
      : index(record[0]),
        name(text(record.slice(1, 16))),
        serial(text(record.slice(107, 31))),
        type(record[833]),
        stamp(static_cast<int32_t>(little_endian(record, 827, 4))) {
    for (const size_t offset : {255u, 257u, 259u, 261u}) ids.push_back(little_endian(record, offset, 2));
  }
  bool is(const Controller &other) const { return index == other.index && serial == other.serial; }
  bool is_reported_when_gone() const { return !serial.empty() && std::ranges::count(ids, 0u) == 0; }
};

// The first entry with the controller's identity.
const Controller *find(const std::vector<Controller> &list, const Controller &controller) {
  for (const Controller &entry : list)
    if (entry.is(controller)) return &entry;
  return nullptr;
}

class Controllers : public Model {
 public:
  using Model::Model;

  int32_t call(const std::string &entry_point, tests::HostReplyBuffer *buffer, uint32_t *length) override {
    const bool is_full = entry_point == "mc_get_store_ctrls";
    if (!buffer) {
      if (!is_full) *length = 0;
      world.trace(entry_point, is_full ? 1093 : 1225, "buf is NULL\n");
      return kUnavailable;
    }
    Reply reply{*buffer};
    return is_full && world.exists(kSimulationMarker) ? simulate(reply, length) : retrieve(reply, length, !is_full);
  }

 private:
  int32_t retrieve(Reply &reply, uint32_t *length, bool is_delta) {
    *length = 0;
    LockedFile file = lock_and_open(world, nullptr);
    if (file.status != 0) return file.status;
    const int32_t status = read(reply, length, is_delta, file);
    unlock_and_close(world);
    return status;
  }

  int32_t read(Reply &reply, uint32_t *length, bool is_delta, LockedFile &file) {
    if (is_delta && file.facts.modified == saved_time_) return 0;
    const int64_t previous_time = std::exchange(saved_time_, file.facts.modified);

    const auto size = static_cast<uint32_t>(file.facts.size);
    if (size + kRecord * lists_.cached_count + kHeader > reply.size && !reply.grow(size + kHeader, size + kHeader))
      return too_large(size + kHeader);

    const Bytes header = world.read(*file.stream, 1);
    if (header.size() < 1) return kNoData;
    const uint8_t state = header[0];
    const bool has_state_changed = is_delta && state != saved_state_;
    if (is_delta && !has_state_changed && saved_state_ != 2) return 0;
    if (has_state_changed) log_state(state, previous_time);
    saved_state_ = state;

    const std::string failed = lists_.make(world, size / kRecord);
    if (!failed.empty()) {
      world.trace(kRetrieval, failed == "cur" ? 917 : 927, failed + "_ctlr_list memory allocation failed\n");
      return kUnavailable;
    }
    reply.put(0, tests::big_endian().u8(0x28).u16(0).u8(state).u8(0).u32(kRecord).u8(0));

    uint32_t count = 0;
    std::optional<int> read_error;
    while (true) {
      const Bytes record = world.read(*file.stream, kRecord);
      reply.put(slot(count), record);
      if (record.size() < kRecord) {
        read_error = world.error();
        break;
      }
      if (!lists_.exist()) {
        world.trace(kRetrieval, 955,
                    "cur_ctlr_list= " + printed_pointer(lists_.cur) +
                        ", cached_ctlr_list= " + printed_pointer(lists_.cached) + "\n");
        break;
      }
      dump_record(world, text_of_controller(record));
      const Controller &controller = lists_.cur->emplace_back(record);
      if (is_delta) {
        const Controller *const known = find(*lists_.cached, controller);
        if (known && known->stamp == controller.stamp) continue;
      }
      if (has_state_changed)
        world.log(kSource, 989,
                  printed("Storage subsystem state changed, ctlr_index=%d, modTimestamp=%d\n", controller.index,
                          controller.stamp));
      reply.put(slot(count), in_network_order(record, kNumbers));
      count_record(reply, &count);
    }

    const bool is_special = runs_on(kestrano_) || runs_on(morvik_);
    if (is_special && state == 2 && count % kSlots == 0 && lists_.cached_count == 0)
      reply.put(3, tests::big_endian().u8(1));
    if (!file.stream->at_end)
      world.log(kSource, 1054,
                printed("Error reading file %s, %s\n", kRaidLock, strerror(read_error.value_or(world.error()))));

    dump(lists_.cur, lists_.cur ? lists_.cur->size() : 0, "cur_ctlr_list");
    dump(lists_.cached, lists_.cached_count, "cached_ctlr_list");
    if (is_delta && lists_.exist() && !add_gone(reply, &count)) return kTooLarge;
    lists_.exchange();
    dump(lists_.cached, lists_.cached_count, "After swap, cached_ctlr_list");
    *length = kHeader + kRecord * (count % kSlots);
    return 0;
  }

  void log_state(uint8_t state, int64_t previous_time) {
    world.log(kSource, 893,
              printed("Storage subsystem state changed, prevState(%d), newState(%d), prevModTime(%lld, %s), "
                      "curModTime(%lld, %s)\n",
                      saved_state_, state, static_cast<long long>(previous_time), time_text(previous_time).c_str(),
                      static_cast<long long>(saved_time_), time_text(saved_time_).c_str()));
  }

  bool add_gone(Reply &reply, uint32_t *count) {
    std::vector<Controller> gone;
    for (const Controller &controller : *lists_.cached)
      if (!find(*lists_.cur, controller) && controller.is_reported_when_gone()) gone.push_back(controller);
    const uint32_t slots = std::min(*count + static_cast<uint32_t>(gone.size()), kSlots);
    const uint32_t needed = kHeader + slots * kRecord;
    if (needed > reply.size && !reply.grow_and_keep(needed, needed)) return too_large(needed) == 0;
    for (const Controller &controller : gone) {
      const uint32_t at = slot(*count);
      reply.put(at, tests::big_endian().u8(controller.index).text(controller.name, 16));
      reply.put(at + 104, tests::big_endian().u8(1));
      reply.put(at + 106, tests::big_endian().u8(4).text(controller.serial, 31));
      for (size_t i = 0; i < controller.ids.size(); ++i)
        reply.put(at + 255 + 2 * i, tests::big_endian().u16(controller.ids[i]));
      reply.put(at + 833, tests::big_endian().u8(controller.type));
      count_record(reply, count);
    }
    return true;
  }

  static uint32_t slot(uint32_t count) { return kHeader + kRecord * (count % kSlots); }
  static void count_record(Reply &reply, uint32_t *count) { reply.put(4, tests::big_endian().u8(++*count % kSlots)); }

  // Whatever the host granted, the second number is the same.
  int32_t too_large(uint32_t needed) {
    trace_too_large(world, kRetrieval, 869, needed, 65536);
    return kTooLarge;
  }

  // A list that was lost and made again holds nothing, and has zeros for what its count still tells of.
  void dump(const List<Controller> &list, size_t count, const std::string &title) {
    if (!list) return;
    std::vector<std::string> indices;
    for (const Controller &controller : *list) indices.push_back(std::to_string(controller.index));
    indices.resize(count, "0");
    dump_list(world, kListMarker, title, indices);
  }

  // --------------------------------------------------------------------------------------------- the platform

  // Asked for once, whatever comes of it.
  struct Platform {
    std::string name;
    int line;
    bool is_checked = false;
    bool answer = false;
  };

  bool runs_on(Platform &platform) {
    if (std::exchange(platform.is_checked, true)) return platform.answer;
    std::string word;
    const int items = read_product_file(&word);
    if (items != 1)
      world.trace("running_on_" + platform.name, platform.line,
                  printed("fscanf on product file gave unexpected value %d: %d (%s)", items, world.error(),
                          strerror(world.error())));
    return platform.answer = items == 1 && strncasecmp(word.c_str(), platform.name.c_str(), platform.name.size()) == 0;
  }

  // What fscanf makes of it, "%63s"
  int read_product_file(std::string *word) {
    const auto stream = world.open(kProductFile);
    if (!stream) {
      world.trace("read_product_file", 180,
                  printed("fopen(%s) failed: errno %d (%s)", kProductFile, world.error(), strerror(world.error())));
      return 0;
    }
    if (!world.works("fscanf")) return EOF;
    for (size_t i = 0; i < stream->content.size() && word->size() < 63; ++i) {
      const char c = static_cast<char>(stream->content[i]);
      if (!isspace(static_cast<unsigned char>(c)))
        *word += c;
      else if (!word->empty())
        break;
    }
    if (!word->empty()) return 1;
    world.clear_error();  // the end of a file is no error
    return EOF;
  }

  // --------------------------------------------------------------------------------------------- simulation

  // Written where the host's buffer was when it called, whatever the host answers.
  int32_t simulate(Reply &reply, uint32_t *length) {
    constexpr uint32_t kAnnounced = kHeader + 2 * kRecord;
    *length = kAnnounced;
    uint32_t available = kAnnounced;
    if (kAnnounced > reply.size) reply.host.grow(kAnnounced, &available);
    if (kAnnounced > available) {
      trace_too_large(world, "mc_get_store_ctrls", 1114, kAnnounced, available);
      *length = 0;
      return kTooLarge;
    }
    reply.put(0, Bytes::hex("28 00 00 02 02 0E 05 00 00 00"));
    for (uint32_t i = 0; i < 2; ++i) put_simulated(reply, kHeader + i * kRecord, i);
    return 0;
  }

  static void put_simulated(Reply &reply, uint32_t at, uint32_t i) {
    const auto put = [&](uint32_t offset, const char *digits) { reply.put(at + offset, Bytes::hex(digits)); };
    const auto put_text = [&](uint32_t offset, const std::string &text) {
      reply.put(at + offset, tests::little_endian().text(text, text.size() + 1));
    };
    reply.put(at, tests::little_endian().u8(i));
    put_text(1, "SLOT-" + std::to_string(i));
    put_text(23, "LSI MegaRAID SAS 9266-8i");
    put(104, "01 01 00");
    put_text(107, "SR136P0796");
    put_text(235, "LSI Logic");
    put(255, "00 00 00 00 00 00 00 00");
    put_text(263, "Re");
    put_text(266, "01/01/2013");
    for (const uint32_t text : {277u, 288u, 297u, 330u, 363u, 396u, 429u, 462u, 495u}) put_text(text, " ");
    put(759, "05 00 37 42 2C 2C 05 04 00 05 00 00 00 03 00");  // to ecc_bucket_leak_rate
    put(774, "00 00 00 00 00 01 01");                          // to enable_ssd_patrol_read
    put(782, "FF FF 00 00 00 00 01 01");
    put(790, "FF FF FF FF 00 00 00 00");
    put(798, "00 04 00 00 00 00 00 00");
    put(806, "00 00 00 00 00 00 00 00 12 12 00 FF");  // to patrol_read_percent_complete
    put(818, "FF FF FF FF FF FF FF FF 00");
    put(831, "FF 00 00");
    for (const uint32_t number : {834u, 842u, 866u, 874u, 882u, 892u}) put(number, "01 00 00 00 00 00 00 00");
    put(890, "01 00");
    put_text(900, "Optimal");
    put(964, "FF 00");
    put(1292, "FF FF");
  }

  int64_t saved_time_ = 0;
  int saved_state_ = 0;
  SummaryLists<Controller> lists_;
  Platform kestrano_{"kestrano", 203};
  Platform morvik_{"morvik", 224};
};

Bytes controller(Choices &choices) {
  Bytes record = choices.bytes(kRecord);
  if (!choices.one_in(8)) {
    record.put(0, tests::little_endian().u8(choices.below(2)));
    record.put(
        107, tests::little_endian().text(
                 choices.one_of({"A", "", "a serial with its 31 characters", "a serial with its 31 characterS"}), 31));
  }
  if (choices.one_in(6)) record.put(255 + 2 * choices.below(4), tests::little_endian().u16(0));
  record.put(104, tests::little_endian().u8(choices.one_of({1u, 0u, 2u})));
  record.put(827, tests::little_endian().u32(choices.one_of({0u, 0x80000001u})));
  return record;
}

Bytes store_file(Choices &choices) {
  Bytes file = tests::little_endian().u8(choices.one_of({2u, 2u, 2u, 1u, 1u, 0u, 255u}));
  uint32_t records = choices.below(6);
  if (choices.one_in(100)) {  // more than the reply's count can tell
    records += 254;
    const Bytes record = controller(choices);
    for (uint32_t i = 0; i < records; ++i) file += Bytes(record).put(0, tests::little_endian().u8(i & 0xFF));
    return file;
  }
  for (uint32_t i = 0; i < records; ++i) file += controller(choices);
  return file;
}

Bytes product_file(Choices &choices) {
  const std::string text = choices.one_of<std::string>({"", "kestrano", "morvik", " \t\r\n\v\f", "Kestrano2 morvik",
                                                        " \nMORVIK-X kestrano\n", "other", "kestran",
                                                        std::string(63, ' ') + "morvik", std::string(60, 'x')});
  return tests::little_endian().text(text, text.size());
}

}  // namespace controller_model

std::string text_of_controller(const Bytes &record) {
  using namespace controller_model;
  const std::string names = dumped(record, kNames);
  if (record[104] != 1) return names + dumped(record, {{104, As::kBool, "is-supported: %s\n"}});
  return names + dumped(record, kLinesToSmartError) +
         printed("disable-ncq: %s\n", record[778] != 0 ? "false" : "true") + dumped(record, kLinesFromSpinDown);
}

Kind controllers() {
  using namespace controller_model;
  return {.name = "controllers",
          .entry_points = {"mc_get_store_ctrls", "mc_delta_store_ctrls"},
          .files = {{kRaidLock, store_file}, {kProductFile, product_file}},
          .markers = {kSimulationMarker, kRecordMarker, kListMarker},
          .faults = {{"fopen", 6, EMFILE, false},
                     {"fopen", 1, ENOENT, false},
                     {"fileno", 1, EBADF, false},
                     {"flock", 2, EINTR, false},
                     {"stat", 10, EACCES, false},
                     {"fread", 8, EIO, false},
                     {"fscanf", 2, EIO, false},
                     {"realloc", 2, ENOMEM, false},
                     {"realloc", 2, EAGAIN, false}},
          .model = make_model<Controllers>,
          .in_place = kSimulationMarker};
}

}  // namespace model
