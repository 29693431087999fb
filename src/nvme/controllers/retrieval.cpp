// Reads the NVMe controller store file into a staging image, tells what changed since the previous call, and answers in
// XML. What differs from the drives differs on purpose: hosts have come to rely on it.

#include <algorithm>
#include <cstring>
#include <span>

#include "mcserver_storage.h"
#include "nvme/answer.h"
#include "nvme/controllers/fields.h"
#include "nvme/nvme_lock.h"
#include "records/nvme_controller_record.h"
#include "shared/counted_records.h"
#include "shared/exported.h"
#include "shared/identity_index.h"
#include "shared/owned_memory.h"
#include "shared/record_reader.h"
#include "shared/record_text.h"
#include "shared/reply_buffer.h"
#include "shared/store_lock.h"
#include "shared/summary_lists.h"
#include "shared/trace.h"

namespace mcserver::nvme::controllers {
namespace {

constexpr char kFunction[] = "get_nvme_controller_info";
constexpr const records::KindFacts &kFacts = records::kNvmeControllerFacts;
using Image = CountedRecords<NvmeCtlrImageHeader, NvmeCtlrInfo>;

// What the previous call left. The host runs one call of a kind at a time, so nothing guards it.
struct Baseline {
  Subsystem subsystem;
  SummaryLists<NvmeCtlrSummary> lists;
};
constinit Baseline baseline;

[[gnu::destructor]] void release_lists() { baseline.lists.release(); }

// Zero-filled room for every record of the file and every controller that may be gone; null when there is no memory.
void *new_image(uint64_t file_size) {
  const uint64_t size = file_size + uint64_t{Image::kRecordSize} * baseline.lists.cached_count() + Image::kHeaderSize;
  if (size > UINT32_MAX) return nullptr;  // more than the target can address
  void *image = malloc(static_cast<size_t>(size));
  if (image) memset_s(image, static_cast<size_t>(size), 0, static_cast<size_t>(size));
  return image;
}

void write_header(uint8_t *image, uint8_t state) {
  NvmeCtlrImageHeader *header = Image::header_of(image);
  header->state = state;
  header->count = 0;
  header->record_size = Image::kRecordSize;
  memset(header->zero, 0, sizeof header->zero);
}

// The other fields stay: they may be those of a record that was read and not reported.
void write_gone(const NvmeCtlrSummary &entry, NvmeCtlrInfo *record) {
  strncpy_s(record->controller_name, sizeof record->controller_name, entry.controller_name,
            sizeof entry.controller_name);
  record->status = kFacts.gone.value;
}

using Index = IdentityIndex<NvmeCtlrInfo, NvmeCtlrSummary, records::kNvmeControllerIdentity>;

}  // namespace

EXPORTED int32_t new_nvme_ctlr_or_modified(const NvmeCtlrInfo *record, const NvmeCtlrSummary *cached_list,
                                           uint16_t cached_count) {
  if (!record || !cached_list) return 0;
  return is_new_or_modified(Index::first_of(std::span(cached_list, cached_count), *record), record->mod_timestamp);
}

EXPORTED void add_deleted_nvme_ctlrs(uint8_t *image, uint16_t cur_count, const NvmeCtlrSummary *cur_list,
                                     uint16_t cached_count, const NvmeCtlrSummary *cached_list) {
  if (!image || !cur_list || !cached_list) return;
  const Index cur({cur_list, cur_count});
  for (const NvmeCtlrSummary &entry : std::span(cached_list, cached_count))
    if (!cur.find(entry)) write_gone(entry, Image::append(image));
}

EXPORTED int32_t get_nvme_controller_info(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len,
                                          int32_t event) {
  if (!reply_len) return MC_STORE_UNAVAILABLE;  // the host's error
  *reply_len = 0;

  StoreFile store(kNvmeLock);
  if (store.status() != MC_STORE_SUCCESS) return store.status();

  Subsystem &subsystem = baseline.subsystem;
  if (event && store.modified() == subsystem.modified) return MC_STORE_SUCCESS;
  const Subsystem previous = subsystem;
  subsystem.modified = store.modified();  // moves even when a later step fails

  const OwnedMemory image(new_image(store.size()));
  if (!image) {
    SYSTEM_LOG(kNvmeSource, 639, "Memory allocation failed");
    return MC_STORE_NO_IMAGE;
  }

  RecordReader reader(store);
  records::NvmeControllerFileHeader file_header;
  if (!reader.read_into(&file_header)) return MC_STORE_NO_DATA;
  const uint8_t state = file_header.subsystem_state;

  const bool state_changed = event && state != previous.state;
  if (state_changed) log_state_change(662, previous, {store.modified(), state});
  // An event compares records only in one state; in any other, only a change of the state itself is news.
  if (event && !state_changed && state != MC_NVME_STATE_MAIN_POWER) return MC_STORE_SUCCESS;
  subsystem.state = state;

  SummaryLists<NvmeCtlrSummary> &lists = baseline.lists;
  switch (lists.reserve(static_cast<uint32_t>(store.size()) / Image::kRecordSize)) {
    case ListSizing::kCurFailed:
      TRACE(kFunction, 687, "cur_ctlr_list memory allocation failed\n");
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kCachedFailed:
      TRACE(kFunction, 698, "cached_ctlr_list memory allocation failed\n");
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kEnough:
      break;
  }

  write_header(image.bytes(), state);
  const Index known({lists.cached(), event ? lists.comparable_count() : size_t{0}});
  // A record that is not counted is overwritten by the next one.
  while (NvmeCtlrInfo *record = reader.read_into(Image::next_slot(image.bytes()))) {
    if (!lists.exist()) {
      TRACE(kFunction, 722, "cur_ctlr_list= %p, cached_ctlr_list= %p\n", static_cast<const void *>(lists.cur()),
            static_cast<const void *>(lists.cached()));
      break;
    }
    // The time stamp is not remembered, and stays 0.
    NvmeCtlrSummary &entry = lists.add();
    memcpy(entry.controller_name, record->controller_name, sizeof entry.controller_name);
    if (event && !is_new_or_modified(known.find(*record), record->mod_timestamp)) continue;

    if (state_changed)
      SYSTEM_LOG(kNvmeSource, 743, "NVME subsystem state changed, controller_name=%s, modTimestamp=%d\n",
                 ShownRecord(record).text_at(offsetof(NvmeCtlrInfo, controller_name)),
                 static_cast<int32_t>(record->mod_timestamp));
    Image::header_of(image.bytes())->count++;
  }
  if (!reader.at_end())
    SYSTEM_LOG(kNvmeSource, 751, "Error reading file %s, %s\n", kNvmeLock.path, strerror(reader.error()));

  store.release();  // before the gone ones are appended, unlike for drives
  if (event)
    add_deleted_nvme_ctlrs(image.bytes(), static_cast<uint16_t>(lists.cur_count()), lists.cur(),
                           lists.comparable_count(), lists.cached());
  lists.rotate(lists.cached_count());

  constexpr Answer answer = {kFunction, 776, xmlize_nvme_controller};
  return answer.send(image.bytes(), Image::header_of(image.bytes())->count, ReplyBuffer(ctx, reply, reply_size),
                     reply_len);
}

}  // namespace mcserver::nvme::controllers
