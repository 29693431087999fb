// NVMe controllers and PCIe switches.

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "model/dump.h"
#include "model/kinds.h"
#include "model/nvme.h"

namespace model {
namespace {

constexpr char kNvmeCtlrRetrieval[] = "get_nvme_controller_info";
constexpr uint32_t kNvmeCtlrRecord = 262;
constexpr uint32_t kNvmeCtlrSummary = 28;
constexpr uint32_t kNvmeCtlrName = 24;

const std::vector<Line> kNvmeCtlrToType = {
    {0, As::kText, "controller-name=\"%s\" "},
    {30, As::kText, "controller-type=\"%s\" "},
};

const std::vector<Line> kNvmeCtlrOfSwitch = {
    {46, As::kText, "vendor-id=\"%s\" "},
    {55, As::kText, "product-id=\"%s\" "},
    {72, As::kU32, "component-id=\"%x\" "},
    {76, As::kText, "product-revision=\"%s\" "},
    {81, As::kU16, "p2p-vendor-id=\"%x\" "},
    {83, As::kU16, "p2p-device-id=\"%x\" "},
    {85, As::kText, "running-firmware-version=\"%s\" "},
    {109, As::kText, "pending-firmware-version=\"%s\" "},
    {133, As::kU8, "switch-temperature=\"%d\" "},
};

std::string part_status(const std::string &name, const std::string &stored, const std::string &fault) {
  if (stored.starts_with("Optimal")) return name + "=\"" + stored + "\" ";
  return name + "=\"" + fault + "\" " + name + "-desc=\"" + stored + "\" ";
}

std::string nvme_ctlr_element(const Bytes &record) {
  const auto text_at = [&](size_t offset) { return text(record.slice(offset, kNvmeCtlrRecord - offset)); };
  std::string xml = "<NVME-ctlr " + dumped(record, kNvmeCtlrToType) + "status=\"" + status_word(record[28]) + "\" " +
                    printed("drive-count=\"%d\" ", record[29]);
  if (text_at(30).starts_with("NVME-MSWITCH"))
    xml += dumped(record, kNvmeCtlrOfSwitch) + part_status("switch-status", text_at(134), "Severe_Fault") +
           part_status("link-status", text_at(198), "Moderate_Fault");
  return xml + "/>";
}

bool contains(const std::vector<std::string> &names, const std::string &name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

class NvmeControllers : public Model {
 public:
  using Model::Model;

  int32_t call(const std::string &entry_point, tests::HostReplyBuffer *buffer, uint32_t *length) override {
    const bool is_event = entry_point == "mc_event_nvme_controller";
    *length = 0;
    LockedFile file = lock_and_open_nvme(world, nullptr);
    if (file.status != 0) return file.status;
    if (is_event && file.facts.modified == last_time_) return unlocked(0);
    const int64_t previous_time = std::exchange(last_time_, file.facts.modified);

    if (!world.works("malloc")) {
      world.log(kNvmeSource, 639, "Memory allocation failed");
      return unlocked(35);
    }
    Bytes image = Bytes::repeated(static_cast<size_t>(file.facts.size) + cached_count_ * kNvmeCtlrRecord, 0);
    const Bytes header = world.read(*file.stream, 1);
    if (header.size() < 1) return unlocked(kNoData);
    const uint8_t state = header[0];
    const bool is_new_state = is_event && state != last_state_;
    if (is_new_state) log_new_state(world, 662, last_state_, state, previous_time, last_time_);
    if (is_event && !is_new_state && state != kMainPower) return unlocked(0);
    last_state_ = state;
    if (!make_lists(file.facts.size)) return unlocked(kUnavailable);

    uint8_t count = 0;
    std::vector<std::string> cur;
    while (true) {
      const Bytes record = world.read(*file.stream, kNvmeCtlrRecord);
      image.put(count * kNvmeCtlrRecord, record);
      if (record.size() < kNvmeCtlrRecord) break;
      if (!has_cur_ || !has_cached_) {
        world.trace(kNvmeCtlrRetrieval, 722,
                    printed("cur_ctlr_list= %s, cached_ctlr_list= %s\n", address(has_cur_), address(has_cached_)));
        break;
      }
      const auto stamp = static_cast<uint32_t>(little_endian(record, 24, 4));
      cur.push_back(text(record.slice(0, kNvmeCtlrName)));
      // The stamp of what is remembered is never written: it is 0.
      if (is_event && contains(cached_, cur.back()) && stamp == 0) continue;
      if (is_new_state)
        world.log(kNvmeSource, 743,
                  printed("NVME subsystem state changed, controller_name=%s, modTimestamp=%d\n", text(record).c_str(),
                          static_cast<int>(stamp)));
      ++count;
    }
    if (!file.stream->at_end)
      world.log(kNvmeSource, 751, printed("Error reading file %s, %s\n", kNvmeLock, strerror(world.error())));
    unlock_and_close_nvme(world);

    if (is_event && has_cur_ && has_cached_)
      for (const std::string &name : cached_) {
        if (contains(cur, name)) continue;
        image.put(count * kNvmeCtlrRecord, tests::little_endian().text(name, kNvmeCtlrName));
        image.put(count * kNvmeCtlrRecord + 28, tests::little_endian().u8(kDeleted));
        ++count;
      }
    cached_count_ = cur.size();
    cached_ = cur;
    std::swap(has_cur_, has_cached_);

    std::string xml = xml_summary("NVME-ctlr", count, state);
    for (uint32_t i = 0; i < count; ++i) xml += nvme_ctlr_element(image.slice(i * kNvmeCtlrRecord, kNvmeCtlrRecord));
    return answer(world, buffer, xml, count, {kNvmeCtlrRetrieval, 776}, length);
  }

 private:
  int32_t unlocked(int32_t status) {
    unlock_and_close_nvme(world);
    return status;
  }

  // Memory that is refused with another errno than ENOMEM is no failure: the list is missing then.
  bool make_lists(uint64_t file_size) {
    const uint64_t needed = file_size / kNvmeCtlrRecord * kNvmeCtlrSummary;
    if (needed == 0 || (has_cur_ && capacity_ >= needed)) return true;
    capacity_ = 0;
    world.clear_error();
    has_cur_ = world.works("realloc");
    if (world.error() == ENOMEM) {
      world.trace(kNvmeCtlrRetrieval, 687, "cur_ctlr_list memory allocation failed\n");
      return false;
    }
    world.clear_error();
    has_cached_ = world.works("realloc");
    if (!has_cached_) cached_.clear();
    if (world.error() == ENOMEM) {
      world.trace(kNvmeCtlrRetrieval, 698, "cached_ctlr_list memory allocation failed\n");
      has_cur_ = false;
      return false;
    }
    capacity_ = needed;
    return true;
  }

  static const char *address(bool is_there) { return is_there ? kAnAddress : "(nil)"; }

  int64_t last_time_ = -1;
  int last_state_ = -1;
  bool has_cur_ = false;
  bool has_cached_ = false;
  uint64_t capacity_ = 0;
  std::vector<std::string> cached_;
  size_t cached_count_ = 0;  // stays when the list is lost
};

const std::vector<TextField> kNvmeCtlrTexts = {{0, 24},  {30, 16},  {46, 9},   {55, 17}, {76, 5},
                                               {85, 24}, {109, 24}, {134, 64}, {198, 64}};

Bytes nvme_ctlr_file(Choices &choices) {
  Bytes file = tests::little_endian().u8(any_state(choices));
  // More than 255 wrap the count.
  const uint32_t records = choices.one_in(40) ? 250 + choices.below(20) : choices.below(8);
  const bool texts_run_over = choices.one_in(5);
  for (uint32_t i = 0; i < records; ++i) {
    Bytes record = any_record(choices, kNvmeCtlrRecord, kNvmeCtlrTexts, texts_run_over);
    const auto put = [&](size_t offset, size_t width, std::initializer_list<const char *> texts) {
      record.put(offset, tests::little_endian().text(choices.one_of(texts), width));
    };
    if (!choices.one_in(16)) put(0, kNvmeCtlrName, {"A", "B", "", "a name of 24 characters!"});
    if (choices.one_in(2)) put(30, 16, {"NVME-MSWITCH", "NVME-MSWITCH-X", "NVME-MSWITC", "NVME-MSWITCH!!!!"});
    if (choices.one_in(2)) put(134, 64, {"Optimal", "Optima", "Optimal, running", "optimal"});
    if (choices.one_in(2)) put(198, 64, {"Optimal", "Optima", "Optimal, running", "optimal"});
    record.put(24, tests::little_endian().u32(choices.one_of<uint32_t>({0, 1, 0xFFFFFFFF})));
    record.put(28, tests::little_endian().u8(choices.below(9)));
    file += record;
  }
  return file;
}

}  // namespace

Kind nvme_controllers() {
  return {.name = "nvme_controllers",
          .entry_points = {"mc_get_nvme_controller", "mc_event_nvme_controller", "mc_event_nvme_controller"},
          .files = {{kNvmeLock, nvme_ctlr_file}},
          .markers = {},
          .faults = {{"fopen", 1, EMFILE, false},
                     {"fopen", 1, ENOENT, false},
                     {"fileno", 1, EBADF, false},
                     {"flock", 2, EINTR, false},
                     {"stat", 1, EACCES, false},
                     {"fread", 8, EIO, false},
                     {"fclose", 1, EIO, false},
                     {"localtime_r", 2, EOVERFLOW, false},
                     {"malloc", 1, ENOMEM, false},
                     {"calloc", 1, ENOMEM, false},
                     {"realloc", 2, ENOMEM, false},
                     {"realloc", 2, EAGAIN, false}},
          .model = make_model<NvmeControllers>};
}

}  // namespace model
