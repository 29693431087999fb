// Battery backup units, and the flash module that they are completed from.

#include <cerrno>
#include <cstring>

#include "model/dump.h"
#include "model/kinds.h"
#include "model/raid.h"
#include "model/summary_lists.h"

namespace model {
namespace bbu_model {

constexpr char kStore[] = "/var/storBBU_info";
constexpr char kImageFile[] = "/var/log/TFM_FRU.bin";
constexpr char kListMarker[] = "/var/mctool_bbudebug";
constexpr char kRetrieval[] = "get_store_bbu";
constexpr uint32_t kHeader = 17;
constexpr uint32_t kRecord = 161;
constexpr uint32_t kSlots = 256;  // the reply's count has 8 bits

const std::vector<Number> kNumbers = {{43, 2}, {46, 2}, {48, 2}, {50, 2}, {59, 4}, {63, 4}, {85, 4}, {68, 4}};
const std::vector<Number> kCapacitorNumbers = {{74, 2}, {76, 2}};
const std::vector<Number> kBatteryNumbers = {{77, 2}, {79, 2}, {83, 2}};

const std::vector<Line> kLinesToCapacitor = {
    {0, As::kU8, "Controller Index       = %d\n"},
    {1, As::kU8, "Change ID              = %d\n"},
    {2, As::kU8, "Status                 = %d\n"},
    {3, As::kU8, "Type                   = %d (0:NONE, 1:IBBU, 2:BBU, 3:ZCR, 4:ITBBU3, 5:IBBU08, 6:IBBU09, 7:TMMC\n"},
    {4, As::kText, "Device Name            = %s\n"},
    {12, As::kText, "Manufacturer           = %s\n"},
    {24, As::kText, "Mfg Date               = %s\n"},
    {35, As::kText, "Module version         = %s\n"},
    {43, As::kU16, "Serial number          = %d\n"},
    {45, As::kU8,
     "Charging state         = %d (0:UNK, 1:FullyDischarged, 2:FullyCharged, 3:Discharging, 4:Charging, "
     "5:Initialized, 6:Capacitor)\n"},
    {46, As::kU16, "Design voltage         = %d\n"},
    {48, As::kU16, "Voltage                = %d\n"},
    {50, As::kU16, "Current                = %d\n"},
    {52, As::kU8, "Temperature            = %d\n"},
    {53, As::kBool, "Voltage is low         = %s\n"},
    {54, As::kBool, "Temp is high           = %s\n"},
    {55, As::kBool, "Learn cycle transparent= %s\n"},
    {56, As::kU8, "Learn Mode             = %d (0:Auto, 1:Disabled, 2:Warn)\n"},
    {57, As::kU8,
     "Learn Cycle Progress Status           = %d (0:UNK, 1:Success, 2:Active, 3:Aborted, 4:Suspended, 5:Failed)\n"},
    {58, As::kS8, "Learn Cycle Progress Percent complete = %d\n"},
    {59, As::kU32, "Learn Cycle Progress Start timestamp  = %d\n"},
    {63, As::kU32, "Learn Cycle Progress End timestamp    = %d\n"},
    {67, As::kBool, "Learn cycle requested                 = %s\n"},
    {68, As::kU32, "Next learn cycle                      = %ld\n"},
    {72, As::kBool, "Capacitor: %s\n"},
};

const std::vector<Line> kCapacitorLines = {
    {73, As::kU8, "Capacitance          = %d\n"},
    {74, As::kU16, "Design capacity      = %d\n"},
    {76, As::kU16, "Pack Energy          = %d\n"},
    {78, As::kU8, "Remaining pool space = %d\n"},
};

const std::vector<Line> kBatteryLines = {
    {73, As::kU8, "Retention time           = %d\n"},  {74, As::kU8, "Relative state of charge = %d\n"},
    {75, As::kU8, "Absolute state of charge = %d\n"},  {76, As::kU8, "Expected margin of error = %d\n"},
    {77, As::kU16, "Design capacity          = %d\n"}, {79, As::kU16, "Full capacity            = %d\n"},
    {81, As::kU16, "Remaining capacity       = %d\n"}, {83, As::kU16, "Completed charge cycles  = %d\n"},
};

const std::vector<Line> kFlashModuleLines = {
    {89, As::kText, "TFM Vendor    = %s\n"},
    {109, As::kText, "TFM Model     = %s\n"},
    {129, As::kText, "TFM Serial Num= %s\n"},
    {145, As::kText, "TFM Revision  = %s\n"},
};

bool is_capacitor(const Bytes &record) { return record[72] != 0; }

// A board area of fields, each a type/length byte and its data. Positions have 8 bits; zeros follow the image's 128
// bytes.
class BoardArea {
 public:
  explicit BoardArea(const Bytes &image) : image_(image), position_(static_cast<uint8_t>(image[3] * 8 + 6)) {}

  // A copy ends where the record does.
  void copy_field(Bytes &record, size_t offset) {
    Bytes data;
    for (size_t i = 0; i < length(); ++i) data.u8(at(data_position() + i));
    data.u8(0);
    record.put(offset, data.slice(0, std::min(data.size(), record.size() - offset)));
    skip_field();
  }
  void skip_field() { position_ = static_cast<uint8_t>(data_position() + length()); }

  uint8_t data_position() const { return static_cast<uint8_t>(position_ + 1); }
  uint8_t at(size_t position) const { return position < 128 ? image_[position] : 0; }

 private:
  size_t length() const { return at(position_) & 0x3F; }

  const Bytes &image_;
  uint8_t position_;
};

void fill_flash_module_texts(const Bytes &image, Bytes &record) {
  BoardArea board(image);
  board.copy_field(record, 89);
  board.copy_field(record, 109);
  board.copy_field(record, 129);
  board.skip_field();  // the part number
  board.skip_field();  // the FRU file id
  const size_t q = board.data_position();
  const auto character = [&](size_t k) { return static_cast<char>(board.at(q + k)); };
  const std::string revision = std::string("P[") + character(0) + character(1) + "]F[" +
                               std::to_string(board.at(q + 2)) + "]V[" + character(3) + character(4) + character(5) +
                               "]";
  record.put(145, tests::little_endian().text(revision.substr(0, 15), 16));
}

struct Bbu {
  uint8_t controller;
  uint64_t stamp;

  explicit Bbu(const Bytes &record) : controller(record[0]), stamp(little_endian(record, 85, 4)) {}
};

class Bbus : public Model {
 public:
  using Model::Model;

  int32_t call(const std::string &entry_point, tests::HostReplyBuffer *buffer, uint32_t *length) override {
    const bool is_full = entry_point == "mc_get_store_bbu";
    if (!buffer) {
      if (!is_full) *length = 0;
      world.trace(entry_point, is_full ? 2465 : 2551, "buf is NULL\n");
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
    if (is_delta && file.facts.modified == saved_time_) return unlocked(0);
    saved_time_ = file.facts.modified;

    const auto size = static_cast<uint32_t>(file.facts.size);
    make_room(reply, size + lists_.cached_count * kRecord + kHeader);
    if (size + kHeader > reply.size) return unlocked(kTooLarge);

    const std::string failed = lists_.make(world, size / kRecord);
    if (!failed.empty()) {
      world.trace(kRetrieval, failed == "cur" ? 2345 : 2356,
                  printed("%s_bbu_list memory allocation failed, %s\n", failed.c_str(), strerror(ENOMEM)));
      return unlocked(kUnavailable);
    }
    reply.put(0, tests::big_endian().u8(0x28).u16(0).u8(0).u32(kRecord).u8(0));
    const uint32_t count = read_records(reply, is_delta, *file.stream);
    unlock_and_close(world);

    dump(lists_.cur, "cur_bbu_list");
    lists_.exchange();
    dump(lists_.cached, "After swap, cached_BBU_list");
    *length = count * kRecord + kHeader;
    return 0;
  }

  int32_t unlocked(int32_t status) {
    unlock_and_close(world);
    return status;
  }

  // Less than what is asked for may do. A host that returns null, or the old buffer and too small a size, has left the
  // old buffer as it was.
  void make_room(Reply &reply, uint32_t required) {
    if (required <= reply.size) return;
    const uint8_t *const old_bytes = reply.bytes;
    const uint32_t old_size = reply.size;
    if (!reply.grow(required, required) && reply.bytes == old_bytes) reply.size = old_size;
  }

  // The count as the reply has it.
  uint32_t read_records(Reply &reply, bool is_delta, Stream &stream) {
    uint32_t count = 0;
    std::optional<int> read_error;
    while (true) {
      Bytes record = world.read(stream, kRecord);
      reply.put(kHeader + count * kRecord, record);
      if (record.size() < kRecord) {
        read_error = world.error();
        break;
      }
      if (!lists_.exist()) {
        world.trace(kRetrieval, 2383,
                    "cur_bbu_list= " + printed_pointer(lists_.cur) +
                        ", cached_bbu_list= " + printed_pointer(lists_.cached) + "\n");
        break;
      }
      dump_record(world, text_of_bbu(record));
      lists_.cur->emplace_back(record);
      if (is_delta && !is_new_or_modified(lists_.cur->back())) continue;
      record = in_network_order(record, kNumbers);
      record = in_network_order(record, is_capacitor(record) ? kCapacitorNumbers : kBatteryNumbers);
      read_flash_module(record);
      dump_record(world, dumped(record, kFlashModuleLines));
      reply.put(kHeader + count * kRecord, record);
      count = (count + 1) % kSlots;
      reply.put(3, tests::big_endian().u8(count));
    }
    if (!stream.at_end)
      world.trace(kRetrieval, 2431,
                  printed("Error reading file %s, %s\n", kStore, strerror(read_error.value_or(world.error()))));
    return count;
  }

  // The first entry of the controller decides.
  bool is_new_or_modified(const Bbu &bbu) const {
    for (const Bbu &entry : *lists_.cached)
      if (entry.controller == bbu.controller) return entry.stamp != bbu.stamp;
    return true;
  }

  void read_flash_module(Bytes &record) {
    const auto stream = world.open(kImageFile);
    if (!stream) return;
    const size_t size = world.works("fread") ? stream->content.size() : 0;
    if (size < 128)
      world.log("mcserver_storage.cpp", 2209,
                printed("TFM_FRU file read : FAILED : bytes read = %d\n", static_cast<int>(size)));
    else
      fill_flash_module_texts(stream->content, record);
  }

  void dump(const List<Bbu> &list, const std::string &title) {
    if (!list) return;
    std::vector<std::string> controllers;
    for (const Bbu &bbu : *list) controllers.push_back(std::to_string(bbu.controller));
    dump_list(world, kListMarker, title, controllers);
  }

  // --------------------------------------------------------------------------------------------- simulation

  int32_t simulate(Reply &reply, uint32_t *length) {
    constexpr uint32_t kAnnounced = kHeader + 2 * kRecord;
    *length = kAnnounced;
    if (kAnnounced > reply.size && !reply.grow(kAnnounced, kAnnounced)) {
      trace_too_large(world, "mc_get_store_bbu", 2481, kAnnounced, reply.size);
      *length = 0;
      return kTooLarge;
    }
    reply.put(0, Bytes::hex("28 00 01 02 A1 00 00 00 00"));
    for (uint32_t i = 0; i < 2; ++i) {
      const uint32_t at = kHeader + i * kRecord;
      reply.put(at, Bytes::hex("01 01 00 02"));
      reply.put(at + 4, tests::little_endian().text("BBU-" + std::to_string(i), 6));
      reply.put(at + 12, tests::little_endian().text("LSI", 4));
      reply.put(at + 24, tests::little_endian().text("0000-00-00", 11));
      reply.put(at + 35, tests::little_endian().text(" ", 2));
      reply.put(at + 43, Bytes::hex("00 00 02 03 00 03 00 05 00 15 00 00 00 00 00 FF"));
      reply.put(at + 59, Bytes::hex("FF FF FF FF FF FF FF FF 00 00 00 00 00"));
    }
    reply.put(kHeader + 72, Bytes::hex("00 01 64 64 01 05 00 05 00 05 00 0A 00"));
    reply.put(kHeader + kRecord + 72, Bytes::hex("01 5A 64 00 5A 00 0A"));
    return 0;
  }

  int64_t saved_time_ = 0;
  SummaryLists<Bbu> lists_;
};

Bytes store_file(Choices &choices) {
  // Seldom more than the reply's count can tell.
  const uint32_t records = choices.below(6) + (choices.one_in(100) ? 254 : 0);
  Bytes file;
  for (uint32_t i = 0; i < records; ++i) {
    Bytes record = choices.bytes(kRecord);
    record.put(0, tests::little_endian().u8(choices.below(3)));
    record.put(72, tests::little_endian().u8(choices.below(3)));
    record.put(85, tests::little_endian().u32(choices.one_of({0u, 0x80000001u})));
    file += record;
  }
  return file;
}

// The board area lies where an image usually has it, or anywhere; the fields' lengths are sensible, or anything.
Bytes image(Choices &choices) {
  Bytes image = choices.bytes(choices.one_of({128u, 129u, 228u, 127u}));
  const auto put = [&](size_t position, uint32_t value) { image.put(position, tests::little_endian().u8(value)); };
  if (choices.one_in(3)) {
    put(3, choices.below(256));
    return image;
  }
  put(3, 1);
  for (size_t position = 14; position < 127;) {
    const uint32_t length = choices.one_of({0u, 5u, 15u, 16u, 17u, 20u, 63u});
    put(position, length + 64 * choices.below(4));
    position += 1 + length;
  }
  return image;
}

}  // namespace bbu_model

std::string text_of_bbu(const Bytes &record) {
  using namespace bbu_model;
  return "\n\n\nBattery Backup Unit ===================**************===============\n\n\n" +
         dumped(record, kLinesToCapacitor) + dumped(record, is_capacitor(record) ? kCapacitorLines : kBatteryLines) +
         dumped(record, {{85, As::kU32, "Modified Timestamp       = %d\n"}});
}

Kind bbus() {
  using namespace bbu_model;
  return {.name = "bbus",
          .entry_points = {"mc_get_store_bbu", "mc_delta_store_bbu"},
          .files = {{kRaidLock, lock_file}, {kStore, store_file}, {kImageFile, image}},
          .markers = {kSimulationMarker, kRecordMarker, kListMarker},
          .faults = {{"fopen", 8, EMFILE, false},
                     {"fopen", 1, ENOENT, false},
                     {"fileno", 1, EBADF, false},
                     {"flock", 2, EINTR, false},
                     {"stat", 12, EACCES, false},
                     {"fread", 12, EIO, false},
                     {"realloc", 2, ENOMEM, false},
                     {"realloc", 2, EAGAIN, false}},
          .model = make_model<Bbus>};
}

}  // namespace model
