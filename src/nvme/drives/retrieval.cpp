// Reads the NVMe drive store file into a staging image, tells what changed since the previous call, and answers in XML.

#include <algorithm>
#include <cstring>
#include <span>

#include "mcserver_storage.h"
#include "nvme/answer.h"
#include "nvme/nvme_lock.h"
#include "records/nvme_drive_record.h"
#include "shared/counted_records.h"
#include "shared/exported.h"
#include "shared/identity_index.h"
#include "shared/owned_memory.h"
#include "shared/record_reader.h"
#include "shared/reply_buffer.h"
#include "shared/store_lock.h"
#include "shared/summary_lists.h"
#include "shared/trace.h"

namespace mcserver::nvme::drives {
namespace {

constexpr char kFunction[] = "get_nvme_phy_drive_info";
constexpr const records::KindFacts &kFacts = records::kNvmeDriveFacts;
using Image = CountedRecords<NvmeDriveImageHeader, NvmePhyDriveInfo>;

// What the previous call left. The host runs one call of a kind at a time, so nothing guards it.
struct Baseline {
  Subsystem subsystem;
  SummaryLists<NvmeDriveSummary> lists;
};
constinit Baseline baseline;

[[gnu::destructor]] void release_lists() { baseline.lists.release(); }

// Zero-filled room for every record of the file and every drive that may be gone; null when there is no memory.
void *new_image(uint64_t file_size) {
  const uint64_t size = file_size + uint64_t{Image::kRecordSize} * baseline.lists.cached_count() + Image::kHeaderSize;
  return size <= UINT32_MAX ? calloc(1, static_cast<size_t>(size)) : nullptr;  // no more than the target can address
}

void write_header(uint8_t *image, uint8_t state, uint16_t max_entries) {
  NvmeDriveImageHeader *header = Image::header_of(image);
  header->state = state;
  header->one = 1;
  header->max_entries = max_entries;
  header->count = 0;
  header->record_size = Image::kRecordSize;
  memset(header->zero, 0, sizeof header->zero);
}

void summarize(const NvmePhyDriveInfo &record, NvmeDriveSummary &entry) {
  memcpy(entry.smbios_pcislotname, record.smbios_pcislotname, sizeof entry.smbios_pcislotname);
  memcpy(entry.serial_number, record.serial_number, sizeof entry.serial_number);
  entry.vendor_id = record.vendor_id;
  entry.device_id = record.device_id;
  entry.subvendor_id = record.subvendor_id;
  entry.subdevice_id = record.subdevice_id;
  entry.mod_timestamp = record.mod_timestamp;
}

// The other fields stay: they may be those of a record that was read and not reported.
void write_gone(const NvmeDriveSummary &entry, NvmePhyDriveInfo *record) {
  strncpy_s(record->smbios_pcislotname, sizeof record->smbios_pcislotname, entry.smbios_pcislotname,
            sizeof entry.smbios_pcislotname);
  strncpy_s(record->serial_number, sizeof record->serial_number, entry.serial_number, sizeof entry.serial_number);
  record->vendor_id = entry.vendor_id;
  record->device_id = entry.device_id;
  record->subvendor_id = entry.subvendor_id;
  record->subdevice_id = entry.subdevice_id;
  record->status = kFacts.gone.value;
}

using Index = IdentityIndex<NvmePhyDriveInfo, NvmeDriveSummary, records::kNvmeDriveIdentity>;

}  // namespace

EXPORTED int32_t new_nvme_drive_or_modified(const NvmePhyDriveInfo *record, const NvmeDriveSummary *cached_list,
                                            uint16_t cached_count) {
  if (!record || !cached_list) return 0;
  return is_new_or_modified(Index::first_of(std::span(cached_list, cached_count), *record), record->mod_timestamp);
}

EXPORTED void add_deleted_nvme_drives(uint8_t *image, uint16_t cur_count, const NvmeDriveSummary *cur_list,
                                      uint16_t cached_count, const NvmeDriveSummary *cached_list) {
  if (!image || !cur_list || !cached_list) return;
  const Index cur({cur_list, cur_count});
  for (const NvmeDriveSummary &entry : std::span(cached_list, cached_count))
    if (!cur.find(entry)) write_gone(entry, Image::append(image));
}

EXPORTED int32_t get_nvme_phy_drive_info(void *ctx, uint8_t *reply, uint32_t reply_size, uint32_t *reply_len,
                                         int32_t event) {
  if (!reply_len) return MC_STORE_UNAVAILABLE;  // the host's error
  *reply_len = 0;

  StoreFile store(kNvmeLock, kFacts.store_path);
  if (store.status() != MC_STORE_SUCCESS) return store.status();

  Subsystem &subsystem = baseline.subsystem;
  if (event && store.modified() == subsystem.modified) return MC_STORE_SUCCESS;
  const Subsystem previous = subsystem;
  subsystem.modified = store.modified();  // moves even when a later step fails

  RecordReader reader(store);
  records::NvmeDriveFileHeader file_header;
  if (!reader.read_into(&file_header)) return MC_STORE_NO_DATA;
  const uint8_t state = file_header.nvme_subsystem_info;

  const bool state_changed = event && state != previous.state;
  if (state_changed) log_state_change(460, previous, {store.modified(), state});
  // An event compares records only in one state; in any other, only a change of the state itself is news.
  if (event && !state_changed && state != MC_NVME_STATE_MAIN_POWER) return MC_STORE_SUCCESS;
  subsystem.state = state;

  const OwnedMemory image(new_image(store.size()));
  if (!image) return MC_STORE_UNAVAILABLE;
  const auto max_entries = static_cast<uint16_t>(file_header.noofDrives);
  write_header(image.bytes(), state, max_entries);

  SummaryLists<NvmeDriveSummary> &lists = baseline.lists;
  const uint64_t records = reader.remaining() / Image::kRecordSize;
  switch (lists.make(max_entries, static_cast<uint32_t>(std::min<uint64_t>(max_entries, records)))) {
    case ListSizing::kCurFailed:
      TRACE(kFunction, 488, "cur_pd_list memory allocation failed\n");
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kCachedFailed:
      TRACE(kFunction, 499, "cached_pd_list memory allocation failed\n");
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kEnough:
      break;
  }

  const Index known({lists.cached(), event ? lists.comparable_count() : size_t{0}});
  // A record that is not counted is overwritten by the next one.
  while (NvmePhyDriveInfo *record = reader.read_into(Image::next_slot(image.bytes()))) {
    if (lists.cur_count() >= max_entries) {
      TRACE(kFunction, 512, "Error: File %s has more entries than initially passed max value of %d\n",
            kFacts.store_path, max_entries);
      break;
    }
    summarize(*record, lists.add());
    if (event && !is_new_or_modified(known.find(*record), record->mod_timestamp)) continue;

    if (state_changed) SYSTEM_LOG(kNvmeSource, 539, "NVME subsystem state changed");
    Image::header_of(image.bytes())->count++;
  }
  if (!reader.at_end())
    TRACE(kFunction, 545, "Error reading file %s, %s\n", kFacts.store_path, strerror(reader.error()));

  if (event)
    add_deleted_nvme_drives(image.bytes(), static_cast<uint16_t>(lists.cur_count()), lists.cur(),
                            lists.comparable_count(), lists.cached());
  lists.rotate(max_entries);
  store.release();

  const uint16_t count = Image::header_of(image.bytes())->count;
  if (event && count == 0) return MC_STORE_SUCCESS;
  constexpr Answer answer = {kFunction, 569, xmlize_nvme_phy_drive};
  return answer.send(image.bytes(), count, ReplyBuffer(ctx, reply, reply_size), reply_len);
}

}  // namespace mcserver::nvme::drives
