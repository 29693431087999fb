// Reads the physical drive store file into the host's reply, and tells what changed since the previous call.

#include <algorithm>
#include <cstring>
#include <span>

#include "mcserver_storage.h"
#include "raid/drives/reply.h"
#include "raid/entry_point.h"
#include "raid/gone_devices.h"
#include "raid/storage_lock.h"
#include "records/drive_record.h"
#include "shared/exported.h"
#include "shared/identity_index.h"
#include "shared/network_order.h"
#include "shared/record_reader.h"
#include "shared/reply_buffer.h"
#include "shared/summary_lists.h"
#include "shared/text_field.h"
#include "shared/trace.h"

namespace mcserver::raid::drives {
namespace {

constexpr char kFunction[] = "get_store_phydrives";
constexpr const records::KindFacts &kFacts = records::kDriveFacts;

// What the previous call left. The host runs one call of a kind at a time, so nothing guards it.
struct Baseline {
  time_t modified = 0;  // of the store file, at the last call that got it open
  SummaryLists<PhyDriveSummary> lists;
};
constinit Baseline baseline;

[[gnu::destructor]] void release_lists() { baseline.lists.release(); }

bool refuse_reply(uint32_t needed, const ReplyBuffer &reply) {
  TRACE(kFunction, 1386, "Data length(%d) larger than %d\n", static_cast<int>(needed), static_cast<int>(reply.size()));
  return false;
}

// Makes room for every record of the file, and once more for every drive that it announces. The sum has 32 bits and may
// wrap: only the header is sure to fit after this.
bool make_room_for_file(ReplyBuffer &reply, uint64_t file_size, uint32_t announced) {
  const uint32_t needed = static_cast<uint32_t>(file_size) + announced * Layout::kRecordSize + Layout::kHeaderSize;
  if (file_size + Layout::kHeaderSize > UINT32_MAX) return refuse_reply(needed, reply);
  if (needed > reply.size() && !reply.grow(needed)) return refuse_reply(needed, reply);
  if (reply.size() < Layout::kHeaderSize) return refuse_reply(Layout::kHeaderSize, reply);
  return true;
}

// Is there room in this slot for the next record, or for what is left of the file? Where the needed size has wrapped,
// reading it would otherwise run past the host's buffer.
bool has_room_for_next(const ReplyBuffer &reply, uint32_t slot, const RecordReader &reader) {
  const auto next = static_cast<uint32_t>(std::min<uint64_t>(reader.remaining(), Layout::kRecordSize));
  const uint32_t end = Layout::length(slot) + next;
  if (end > reply.size()) return refuse_reply(end, reply);
  return true;
}

void summarize(const StorPhyDriveInfo &record, PhyDriveSummary &entry) {
  entry.controller_index = record.controller_index;
  entry.slot_num = record.slot_num;
  copy_text(entry.serial_num, record.serial_num);
  entry.mod_timestamp = record.mod_timestamp;
}

// The record of a gone drive: what the summary kept of it. The other bytes stay as the buffer held them.
void write_gone(const PhyDriveSummary &entry, StorPhyDriveInfo *record) {
  record->controller_index = entry.controller_index;
  record->slot_num = entry.slot_num;
  copy_text(record->serial_num, entry.serial_num);
  record->status = kFacts.gone.value;
}

using Index = IdentityIndex<StorPhyDriveInfo, PhyDriveSummary, records::kDriveIdentity>;

uint32_t count_gone(const Index &cur, std::span<const PhyDriveSummary> cached) {
  return static_cast<uint32_t>(
      std::count_if(cached.begin(), cached.end(), [&](const PhyDriveSummary &entry) { return !cur.find(entry); }));
}

}  // namespace

EXPORTED int32_t new_drive_or_modified(const StorPhyDriveInfo *record, const PhyDriveSummary *cached_list,
                                       uint16_t cached_count) {
  if (!record || !cached_list) return 0;
  return is_new_or_modified(Index::first_of(std::span(cached_list, cached_count), *record), record->mod_timestamp);
}

EXPORTED void add_deleted_drives(uint8_t *reply, uint16_t cur_count, const PhyDriveSummary *cur_list,
                                 uint16_t cached_count, const PhyDriveSummary *cached_list) {
  if (!reply || !cur_list || !cached_list) return;
  const Index cur({cur_list, cur_count});
  for (const PhyDriveSummary &entry : std::span(cached_list, cached_count))
    if (!cur.find(entry)) write_gone(entry, Layout::append(reply));
}

EXPORTED int32_t get_store_phydrives(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta) {
  if (!len) return MC_STORE_UNAVAILABLE;  // the host's error
  *len = 0;

  StoreFile store(kStorageLock, kFacts.store_path);
  if (store.status() != MC_STORE_SUCCESS) return store.status();

  if (delta == kDelta && store.modified() == baseline.modified) return MC_STORE_SUCCESS;
  baseline.modified = store.modified();  // even if a later step fails

  RecordReader reader(store);
  records::DriveFileHeader file_header;
  if (!reader.read_into(&file_header)) return MC_STORE_NO_DATA;

  ReplyBuffer reply(ctx, buf, bufsize);
  if (!make_room_for_file(reply, store.size(), file_header.noofDrives)) return MC_STORE_REPLY_TOO_LARGE;
  if (!reply.bytes()) return MC_STORE_UNAVAILABLE;  // the host's error: no buffer, but the size of one

  const uint16_t announced = to_big_endian(static_cast<uint16_t>(file_header.noofDrives));
  write_header(reply.bytes(), 0, announced, 0, to_big_endian(Layout::kRecordSize));

  // The lists have always been as long as the number in the header, read in the wrong byte order.
  SummaryLists<PhyDriveSummary> &lists = baseline.lists;
  const uint16_t entries = announced;
  switch (lists.make(entries, static_cast<uint32_t>(reader.remaining() / Layout::kRecordSize))) {
    case ListSizing::kCurFailed:
      TRACE(kFunction, 1405, "cur_pd_list memory allocation failed\n");
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kCachedFailed:
      TRACE(kFunction, 1415, "cached_pd_list memory allocation failed\n");
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kEnough:
      break;
  }

  const Index known({lists.cached(), delta == kDelta ? lists.comparable_count() : size_t{0}});
  uint16_t count = 0;     // of the records in the reply; the slot follows it, so the 65537th lies in slot 0 again
  uint32_t reported = 0;  // the same, without a wrap
  for (;;) {
    if (!has_room_for_next(reply, count, reader)) return MC_STORE_REPLY_TOO_LARGE;
    // A record that is not counted is overwritten by the next one.
    StorPhyDriveInfo *record = reader.read_into(Layout::record_at(reply.bytes(), count));
    if (!record) break;
    print_pdinfo(record, nullptr);
    summarize(*record, lists.add());
    if (delta == kDelta && !is_new_or_modified(known.find(*record), record->mod_timestamp)) continue;

    to_network_order<records::kDrive>(record);
    Layout::header_of(reply.bytes())->count = ++count;
    reported++;
  }
  if (!reader.at_end())
    TRACE(kFunction, 1495, "Error reading file %s, %s\n", kFacts.store_path, strerror(reader.error()));

  print_pd_list(lists.cur(), static_cast<int32_t>(lists.cur_count()), "cur_list");
  print_pd_list(lists.cached(), lists.cached_count(), "cached_list");

  if (delta == kDelta) {
    // The comparison takes 16 bits of a count, as its interface always has.
    const auto cur_count = static_cast<uint16_t>(lists.cur_count());
    const uint16_t cached_count = lists.comparable_count();
    const auto gone = [&] { return count_gone(Index({lists.cur(), cur_count}), {lists.cached(), cached_count}); };
    if (!make_room_for_gone<Layout>(reply, reported, cached_count, gone,
                                    [&](uint32_t needed) { return refuse_reply(needed, reply); }))
      return MC_STORE_REPLY_TOO_LARGE;
    add_deleted_drives(reply.bytes(), cur_count, lists.cur(), cached_count, lists.cached());
  }

  lists.rotate(entries);
  print_pd_list(lists.cached(), lists.cached_count(), "After cached_list");
  store.release();

  PhyDriveReplyHeader *header = Layout::header_of(reply.bytes());
  if (delta == kFull || (delta == kDelta && header->count != 0)) *len = Layout::length(header->count);
  header->count = to_big_endian(header->count);
  return MC_STORE_SUCCESS;
}

}  // namespace mcserver::raid::drives
