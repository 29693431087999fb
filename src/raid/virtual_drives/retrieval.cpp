// Reads the virtual drive store file into the host's reply, and tells what changed since the previous call. The file is
// read twice: for the summaries, by which room is made for the gone drives too, and for the reply.

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>

#include "mcserver_storage.h"
#include "raid/entry_point.h"
#include "raid/storage_lock.h"
#include "raid/virtual_drives/reply.h"
#include "records/virtual_drive_record.h"
#include "shared/exported.h"
#include "shared/identity_index.h"
#include "shared/network_order.h"
#include "shared/record_reader.h"
#include "shared/record_text.h"
#include "shared/reply_buffer.h"
#include "shared/summary_lists.h"
#include "shared/trace.h"

namespace mcserver::raid::virtual_drives {
namespace {

constexpr char kFunction[] = "get_store_virtdrives";
constexpr const records::KindFacts &kFacts = records::kVirtualDriveFacts;

// What the previous call left. The host runs one call of a kind at a time, so nothing guards it.
struct Baseline {
  time_t modified = 0;  // of the store file, at the last call that got it open
  SummaryLists<VdSummary> lists;
};
constinit Baseline baseline;

[[gnu::destructor]] void release_lists() { baseline.lists.release(); }

void summarize(const StorVirtDriveInfo &record, VdSummary &entry) {
  strncpy_s(entry.name, sizeof entry.name, record.name, sizeof entry.name);
  strncpy_s(entry.guid, sizeof entry.guid, record.guid, sizeof entry.guid);
  entry.controller_index = record.controller_index;
  entry.target_id = record.target_id;
  entry.mod_timestamp = record.mod_timestamp;
}

// The first of the two times that the file is read. Without lists there is nothing to be done.
void summarize_all(const StoreFile &store, SummaryLists<VdSummary> &lists) {
  RecordReader reader(store);
  StorVirtDriveInfo record;
  while (reader.read_into(&record)) {
    if (!lists.exist()) {
      TRACE(kFunction, 1839, "cur_vd_list= %p, cached_vd_list= %p\n", static_cast<const void *>(lists.cur()),
            static_cast<const void *>(lists.cached()));
      return;
    }
    summarize(record, lists.add());
  }
}

bool refuse_reply(uint32_t available, uint32_t bufsize) {
  TRACE(kFunction, 1875, "Data length(%d) larger than %d\n", static_cast<int>(available), static_cast<int>(bufsize));
  return false;
}

// Makes room for every record of the file and every drive that is gone.
bool make_room(ReplyBuffer &reply, uint64_t file_size, uint16_t gone) {
  const uint32_t bufsize = reply.size();
  const uint64_t needed = file_size + uint64_t{Layout::kRecordSize} * gone + Layout::kHeaderSize;
  if (needed > UINT32_MAX) return refuse_reply(bufsize, bufsize);
  if (needed <= bufsize || reply.grow_if_confirmed(static_cast<uint32_t>(needed))) return true;
  return refuse_reply(reply.size(), bufsize);
}

using Index = IdentityIndex<StorVirtDriveInfo, VdSummary, records::kVirtualDriveIdentity>;

// What is converted before a record is compared, and what only when it is reported. The time stamp that decides is
// among the first, so that it is compared in the reply's order with the file's: hosts rely on hearing of every drive
// again whenever the file was written.
constexpr auto kConvertedFirst =
    rows_named(records::kVirtualDrive, "raid_level", "reconstruction_start_timestamp", "reconstruction_end_timestamp",
               "consistency_check_start_timestamp", "consistency_check_end_timestamp", "init_start_timestamp",
               "init_end_timestamp", "mod_timestamp");
constexpr auto kConvertedLast =
    rows_named(records::kVirtualDrive, "size", "strip_size", "remaining_space", "start_block_v12",
               "span_block_count_v12", "smallest_pd_block_count_v12", "pd_block_size_v12");
static_assert(kConvertedFirst.size() + kConvertedLast.size() ==
              std::ranges::count(records::kVirtualDrive, ByteOrder::kNetwork, &Field::order));

// Entries beyond the count stay as the file has them.
void convert_hot_spares(StorVirtDriveInfo *record) {
  for (VdHotSpare &spare : std::span(record->hot_spares).first(record->num_hot_spares))
    to_network_order<records::kHotSpare>(&spare);
}

bool is_all_zeros(const char (&guid)[33]) {
  return std::all_of(guid, guid + sizeof guid, [](char c) { return c == '0'; });
}

// The record of a gone drive: what the summary kept of it. The other bytes stay as the buffer held them.
void write_gone(const VdSummary &entry, StorVirtDriveInfo *record) {
  strncpy_s(record->name, sizeof record->name, entry.name, sizeof entry.name);
  strncpy_s(record->guid, sizeof record->guid, entry.guid, sizeof entry.guid);
  record->target_id = entry.target_id;
  record->controller_index = entry.controller_index;
  record->status = kFacts.gone.value;
}

void append_gone(const VdSummary &entry, uint8_t *reply) {
  StorVirtDriveInfo *record = Layout::append(reply);
  write_gone(entry, record);
  // The time stamp is what the buffer held there, and always has been.
  SYSTEM_LOG(kStorageSource, 1744, "Deleted-Event VD TargetID=%d, name=%.16s mod_timestamp=%d\n", entry.target_id,
             entry.name, static_cast<int32_t>(record->mod_timestamp));
}

}  // namespace

EXPORTED int32_t new_virtdrive_or_modified(const StorVirtDriveInfo *record, const VdSummary *cached_list,
                                           uint16_t cached_count) {
  if (!record || !cached_list) return 0;
  return is_new_or_modified(Index::first_of(std::span(cached_list, cached_count), *record), record->mod_timestamp);
}

EXPORTED uint16_t find_deleted_virtdrives(uint8_t *reply, uint16_t cur_count, const VdSummary *cur_list,
                                          uint16_t cached_count, const VdSummary *cached_list, int32_t emit) {
  if (!cur_list || !cached_list) return 0;
  const Index cur({cur_list, cur_count});
  uint16_t gone = 0;
  for (const VdSummary &entry : std::span(cached_list, cached_count)) {
    if (cur.find(entry)) continue;
    gone++;
    if (emit == 1 && reply) append_gone(entry, reply);
  }
  return gone;
}

EXPORTED int32_t get_store_virtdrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta) {
  if (!len) return MC_STORE_UNAVAILABLE;  // the host's error
  *len = 0;

  StoreFile store(kStorageLock, kFacts.store_path);
  if (store.status() != MC_STORE_SUCCESS) return store.status();

  if (delta == kDelta && store.modified() == baseline.modified) return MC_STORE_SUCCESS;
  baseline.modified = store.modified();  // even if a later step fails

  ReplyBuffer reply(ctx, buf, bufsize);
  if (store.size() + Layout::kHeaderSize > UINT32_MAX) {  // not worth reading
    refuse_reply(bufsize, bufsize);
    return MC_STORE_REPLY_TOO_LARGE;
  }

  SummaryLists<VdSummary> &lists = baseline.lists;
  const uint32_t in_file = static_cast<uint32_t>(store.size()) / Layout::kRecordSize;
  if (lists.cached_count() != 0 && in_file == 0)
    TRACE(kFunction, 1796, "number of virt-drives= %d, prev_num_drives= %d\n", static_cast<int>(in_file),
          lists.cached_count());
  switch (lists.reserve(in_file)) {
    case ListSizing::kCurFailed:
      TRACE(kFunction, 1806, "cur_vd_list memory allocation failed, %s\n", strerror(ENOMEM));
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kCachedFailed:
      TRACE(kFunction, 1817, "cached_vd_list memory allocation failed, %s\n", strerror(ENOMEM));
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kEnough:
      break;
  }

  const uint16_t cached_count = lists.comparable_count();
  print_vd_list(lists.cached(), cached_count, "cached_VD_list before computing deleted drives.");
  summarize_all(store, lists);
  const auto listed = static_cast<int32_t>(lists.cur_count());
  print_vd_list(lists.cur(), listed, "cur_VD_list before computing deleted drives.");

  // The comparison takes 16 bits of a count, as its interface always has.
  const auto cur_count = static_cast<uint16_t>(lists.cur_count());
  const uint16_t gone = find_deleted_virtdrives(nullptr, cur_count, lists.cur(), cached_count, lists.cached(), 0);
  if (!make_room(reply, store.size(), gone)) return MC_STORE_REPLY_TOO_LARGE;

  if (!reply.bytes()) return MC_STORE_UNAVAILABLE;  // the host's error: no buffer, but the size of one
  write_header(reply.bytes(), 0, to_big_endian(Layout::kRecordSize));
  VirtDriveReplyHeader *const header = Layout::header_of(reply.bytes());

  rewind(store.stream());
  RecordReader reader(store);
  const Index known({lists.cached(), delta == kDelta ? cached_count : size_t{0}});
  // A record that is not counted is overwritten by the next one.
  while (StorVirtDriveInfo *record = reader.read_into(Layout::next_slot(reply.bytes()))) {
    if (!lists.exist()) break;
    print_vdinfo(record, nullptr);
    to_network_order<kConvertedFirst>(record);
    if (delta == kDelta && !is_new_or_modified(known.find(*record), record->mod_timestamp)) continue;

    if (is_all_zeros(record->guid))
      SYSTEM_LOG(kStorageSource, 1935, "guidAllZeroes: ctlrIdx=%d, targetId=%d, guid=%s\n", record->controller_index,
                 record->target_id, ShownRecord(record).text_at(offsetof(StorVirtDriveInfo, guid)));
    to_network_order<kConvertedLast>(record);
    convert_hot_spares(record);
    header->count++;
  }
  if (!reader.at_end())
    TRACE(kFunction, 1961, "Error reading file %s, %s\n", kFacts.store_path, strerror(reader.error()));
  store.release();  // before the gone drives are appended, unlike for the other kinds

  print_vd_list(lists.cur(), listed, "cur_VD_list");
  if (delta == kDelta && gone != 0)
    find_deleted_virtdrives(reply.bytes(), cur_count, lists.cur(), cached_count, lists.cached(), 1);
  lists.rotate(cached_count);
  print_vd_list(lists.cached(), lists.cached_count(), "After swap, cached_VD_list");

  if (delta == kFull || (delta == kDelta && header->count != 0)) *len = Layout::length(header->count);
  return MC_STORE_SUCCESS;
}

}  // namespace mcserver::raid::virtual_drives
