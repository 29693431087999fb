// NVMe drives.

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "model/dump.h"
#include "model/kinds.h"
#include "model/nvme.h"

namespace model {
namespace {

constexpr char kNvmeDriveStore[] = "/var/nvmephydrive_info";
constexpr char kNvmeDriveRetrieval[] = "get_nvme_phy_drive_info";
constexpr uint32_t kNvmeDriveRecord = 356;

const std::vector<Line> kNvmeDriveToProductName = {
    {16, As::kText, "controller-name=\"%s\" "},
    {0, As::kText, "smbios-pcislotname=\"%s\" "},
    {41, As::kText, "product-name=\"%s\" "},
};

const std::vector<Line> kNvmeDriveFromSerialNumber = {
    {122, As::kText, "serial-number=\"%s\" "},
    {153, As::kText, "firmware-version=\"%s\" "},
    {250, As::kText, "vendor=\"%s\" "},
    {270, As::kU16, "vendor-id=\"0x%x\" "},
    {272, As::kU16, "device-id=\"0x%x\" "},
    {274, As::kU16, "subvendor-id=\"0x%x\" "},
    {276, As::kU16, "subdevice-id=\"0x%x\" "},
    {278, As::kU8, "temperature=\"%d\" "},
    {279, As::kText, "status-description=\"%s\" "},
    {343, As::kU8, "drive-life-used-percent=\"%d\" "},
    {344, As::kU16, "life-left-in-days=\"%d\" "},
    {347, As::kU8, "percent-power-on-hours=\"%d\" "},
    {346, As::kU8, "performance-percent=\"%d\" "},
    {348, As::kU8, "throttle-threshold=\"%d\" "},
    {349, As::kU8, "shutdown-threshold=\"%d\" "},
};

std::string nvme_drive_element(const Bytes &record) {
  return "<NVME-phy-drive " + dumped(record, kNvmeDriveToProductName) + "status=\"" + status_word(record[40]) + "\" " +
         dumped(record, kNvmeDriveFromSerialNumber) + "/>";
}

struct NvmeDrive {
  std::string slot;
  std::string serial;
  Bytes pci_ids;
  uint64_t stamp;

  explicit NvmeDrive(const Bytes &record)
      : slot(text(record.slice(0, 16))),
        serial(text(record.slice(122, 31))),
        pci_ids(record.slice(270, 8)),
        stamp(little_endian(record, 352, 4)) {}
  bool is(const NvmeDrive &other) const { return slot == other.slot && serial == other.serial; }
};

// The first entry with the drive's identity.
const NvmeDrive *find(const std::vector<NvmeDrive> &list, const NvmeDrive &drive) {
  for (const NvmeDrive &entry : list)
    if (entry.is(drive)) return &entry;
  return nullptr;
}

class NvmeDrives : public Model {
 public:
  using Model::Model;

  int32_t call(const std::string &entry_point, tests::HostReplyBuffer *buffer, uint32_t *length) override {
    const bool is_event = entry_point == "mc_event_nvme_phy_drive";
    *length = 0;
    LockedFile file = lock_and_open_nvme(world, kNvmeDriveStore);
    if (file.status != 0) return file.status;
    if (is_event && file.facts.modified == last_time_) return unlocked(0);
    const int64_t previous_time = std::exchange(last_time_, file.facts.modified);

    const Bytes header = world.read(*file.stream, 5);
    if (header.size() < 5) return unlocked(kNoData);
    const auto most = static_cast<uint16_t>(little_endian(header, 0, 2));
    const uint8_t state = header[4];
    const bool is_new_state = is_event && state != last_state_;
    if (is_new_state) log_new_state(world, 460, last_state_, state, previous_time, last_time_);
    if (is_event && !is_new_state && state != kMainPower) return unlocked(0);
    last_state_ = state;

    if (!world.works("calloc")) return unlocked(kUnavailable);
    Bytes image = Bytes::repeated(static_cast<size_t>(file.facts.size) + cached_.size() * kNvmeDriveRecord, 0);
    if (!make_lists(most, (file.facts.size - 5) / kNvmeDriveRecord)) return unlocked(kUnavailable);

    uint32_t count = 0;
    std::vector<NvmeDrive> cur;
    while (true) {
      const Bytes record = world.read(*file.stream, kNvmeDriveRecord);
      image.put(count * kNvmeDriveRecord, record);
      if (record.size() < kNvmeDriveRecord) break;
      if (cur.size() >= most) {
        world.trace(
            kNvmeDriveRetrieval, 512,
            printed("Error: File %s has more entries than initially passed max value of %d\n", kNvmeDriveStore, most));
        break;
      }
      const NvmeDrive &drive = cur.emplace_back(record);
      const NvmeDrive *const known = find(cached_, drive);
      if (is_event && known && known->stamp == drive.stamp) continue;
      if (is_new_state) world.log(kNvmeSource, 539, "NVME subsystem state changed");
      ++count;
    }
    if (!file.stream->at_end)
      world.trace(kNvmeDriveRetrieval, 545,
                  printed("Error reading file %s, %s\n", kNvmeDriveStore, strerror(world.error())));

    if (is_event)
      for (const NvmeDrive &drive : cached_)
        if (!find(cur, drive)) put_gone(image, count++ * kNvmeDriveRecord, drive);
    cached_ = cur;
    std::swap(cur_size_, cached_size_);
    unlock_and_close_nvme(world);
    if (is_event && count == 0) return 0;

    std::string xml = xml_summary("NVME-phy-drive", count, state);
    for (uint32_t i = 0; i < count; ++i) xml += nvme_drive_element(image.slice(i * kNvmeDriveRecord, kNvmeDriveRecord));
    return answer(world, buffer, xml, count, {kNvmeDriveRetrieval, 569}, length);
  }

 private:
  int32_t unlocked(int32_t status) {
    unlock_and_close_nvme(world);
    return status;
  }

  // Both lists have as many entries as the first call announced; for none, no memory is asked for. One that is too
  // short for the file's records is enlarged.
  bool make_lists(uint16_t most, uint64_t records) {
    const auto allocated = [&](const char *function, int line, const char *list) {
      if (most == 0 || world.works(function)) return true;
      world.trace(kNvmeDriveRetrieval, line, printed("%s_pd_list memory allocation failed\n", list));
      return false;
    };
    if (!has_lists_) {
      if (!allocated("calloc", 488, "cur") || !allocated("calloc", 499, "cached")) return false;
      has_lists_ = true;
      cur_size_ = cached_size_ = most;
    }
    const uint64_t needed = std::min<uint64_t>(most, records);
    if (cur_size_ >= needed) return true;
    if (!allocated("realloc", 488, "cur")) return false;
    cur_size_ = needed;
    return true;
  }

  static void put_gone(Bytes &image, size_t at, const NvmeDrive &drive) {
    image.put(at, tests::little_endian().text(drive.slot, 16));
    image.put(at + 40, tests::little_endian().u8(kDeleted));
    image.put(at + 122, tests::little_endian().text(drive.serial, 31));
    image.put(at + 270, drive.pci_ids);
  }

  int64_t last_time_ = -1;
  int last_state_ = -1;
  std::vector<NvmeDrive> cached_;
  bool has_lists_ = false;
  uint64_t cur_size_ = 0;  // in entries
  uint64_t cached_size_ = 0;
};

const std::vector<TextField> kNvmeDriveTexts = {{0, 16},   {16, 24},  {41, 81}, {122, 31},
                                                {153, 97}, {250, 20}, {279, 64}};

Bytes nvme_drive_file(Choices &choices) {
  const uint32_t records = choices.below(8);
  const uint32_t announced = choices.one_in(3) ? choices.below(8) : records;
  Bytes file = tests::little_endian()
                   .u32(choices.one_in(10) ? choices.one_of<uint32_t>({0, 0x10000, 0x10003, 0xFFFFFFFF}) : announced)
                   .u8(any_state(choices));
  const bool texts_run_over = choices.one_in(5);
  for (uint32_t i = 0; i < records; ++i) {
    Bytes record = any_record(choices, kNvmeDriveRecord, kNvmeDriveTexts, texts_run_over);
    if (!choices.one_in(16)) {
      record.put(0, tests::little_endian().text(choices.one_of({"A", "B", "", "16 characters ok"}), 16));
      record.put(122,
                 tests::little_endian().text(choices.one_of({"1", "1", "", "a serial of its 31 characters!!"}), 31));
    }
    record.put(40, tests::little_endian().u8(choices.below(9)));
    record.put(352, tests::little_endian().u32(choices.below(2)));
    file += record;
  }
  return file;
}

}  // namespace

Kind nvme_drives() {
  return {.name = "nvme_drives",
          .entry_points = {"mc_get_nvme_phy_drive", "mc_event_nvme_phy_drive", "mc_event_nvme_phy_drive"},
          .files = {{kNvmeLock, lock_file}, {kNvmeDriveStore, nvme_drive_file}},
          .markers = {},
          .faults = {{"fopen", 2, EMFILE, false},
                     {"fopen", 2, ENOENT, false},
                     {"fileno", 1, EBADF, false},
                     {"flock", 2, EINTR, false},
                     {"stat", 2, EACCES, false},
                     {"fread", 10, EIO, false},
                     {"fclose", 2, EIO, false},
                     {"localtime_r", 2, EOVERFLOW, false},
                     {"calloc", 4, ENOMEM, false},
                     {"calloc", 3, ENOMEM, false},
                     {"realloc", 1, ENOMEM, false}},
          .model = make_model<NvmeDrives>};
}

}  // namespace model
