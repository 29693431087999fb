// Reads the BBU store file into the host's reply, and tells what changed since the previous call. What differs from the
// other kinds differs on purpose; above all, a BBU that is gone is not reported.

#include <cerrno>
#include <cstring>
#include <span>

#include "mcserver_storage.h"
#include "raid/bbus/reply.h"
#include "raid/entry_point.h"
#include "raid/storage_lock.h"
#include "records/bbu_record.h"
#include "shared/exported.h"
#include "shared/identity_index.h"
#include "shared/network_order.h"
#include "shared/record_reader.h"
#include "shared/reply_buffer.h"
#include "shared/summary_lists.h"
#include "shared/trace.h"

namespace mcserver::raid::bbus {
namespace {

constexpr char kFunction[] = "get_store_bbu";
constexpr const records::KindFacts &kFacts = records::kBbuFacts;

// What the previous call left. The host runs one call of a kind at a time, so nothing guards it.
struct Baseline {
  time_t modified = 0;  // of the store file, at the last call that got it open
  SummaryLists<BbuSummary, uint16_t> lists;
};
constinit Baseline baseline;

[[gnu::destructor]] void release_lists() { baseline.lists.release(); }

// Makes room for every record of the file. The host is asked for as many more as the previous call left, but whatever
// holds the file's own records will do: what it grants, or the old buffer, when that stayed where it was.
bool make_room_for_file(ReplyBuffer &reply, uint64_t file_size) {
  const uint64_t needed = file_size + Layout::kHeaderSize;
  if (needed > UINT32_MAX) return false;

  const uint32_t wanted = static_cast<uint32_t>(needed) + baseline.lists.cached_count() * Layout::kRecordSize;
  if (wanted <= reply.size()) return reply.size() >= needed;

  const ReplyBuffer before = reply;
  reply.grow(wanted);
  if (reply.bytes() && reply.size() >= needed) return true;
  if (reply.bytes() && reply.bytes() != before.bytes()) return false;  // the old buffer may be gone
  reply = before;
  return reply.size() >= needed;
}

void summarize(const StorBbuInfo &record, BbuSummary &entry) {
  entry.controller_index = record.controller_index;
  entry.mod_timestamp = record.modified_timestamp;
}

using Index = IdentityIndex<StorBbuInfo, BbuSummary, records::kBbuIdentity>;

void convert(StorBbuInfo *record) {
  if (record->capacitor)
    to_network_order<records::kBbuCapacitor>(record);
  else
    to_network_order<records::kBbuBattery>(record);
}

}  // namespace

EXPORTED int32_t new_bbu_or_modified(const StorBbuInfo *record, const BbuSummary *cached_list, uint16_t cached_count) {
  if (!record || !cached_list) return 0;
  return is_new_or_modified(Index::first_of(std::span(cached_list, cached_count), *record), record->modified_timestamp);
}

EXPORTED int32_t get_store_bbu(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta) {
  if (!len) return MC_STORE_UNAVAILABLE;  // the host's error
  *len = 0;

  StoreFile store(kStorageLock, kFacts.store_path);
  if (store.status() != MC_STORE_SUCCESS) return store.status();

  if (delta == kDelta && store.modified() == baseline.modified) return MC_STORE_SUCCESS;
  baseline.modified = store.modified();  // even if a later step fails

  ReplyBuffer reply(ctx, buf, bufsize);
  if (!make_room_for_file(reply, store.size())) return MC_STORE_REPLY_TOO_LARGE;

  SummaryLists<BbuSummary, uint16_t> &lists = baseline.lists;
  switch (lists.reserve(static_cast<uint32_t>(store.size()) / Layout::kRecordSize)) {
    case ListSizing::kCurFailed:
      TRACE(kFunction, 2345, "cur_bbu_list memory allocation failed, %s\n", strerror(ENOMEM));
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kCachedFailed:
      TRACE(kFunction, 2356, "cached_bbu_list memory allocation failed, %s\n", strerror(ENOMEM));
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kEnough:
      break;
  }

  if (!reply.bytes()) return MC_STORE_UNAVAILABLE;  // the host's error: no buffer, but the size of one
  write_header(reply.bytes(), 0, 0, to_big_endian(Layout::kRecordSize));
  BbuReplyHeader *const header = Layout::header_of(reply.bytes());

  RecordReader reader(store);
  const Index known({lists.cached(), delta == kDelta ? lists.comparable_count() : size_t{0}});
  // A record that is not counted is overwritten by the next one.
  while (StorBbuInfo *record = reader.read_into(Layout::next_slot(reply.bytes()))) {
    if (!lists.exist()) {
      TRACE(kFunction, 2383, "cur_bbu_list= %p, cached_bbu_list= %p\n", static_cast<const void *>(lists.cur()),
            static_cast<const void *>(lists.cached()));
      break;
    }
    print_bbuInfo(record, nullptr);
    summarize(*record, lists.add());
    if (delta == kDelta && !is_new_or_modified(known.find(*record), record->modified_timestamp)) continue;

    convert(record);
    read_tarvo_tfm_vpd(record, header->count);
    print_bbuTFMInfo(record);
    header->count++;
  }
  if (!reader.at_end())
    TRACE(kFunction, 2431, "Error reading file %s, %s\n", kFacts.store_path, strerror(reader.error()));

  store.release();  // before the lists are exchanged, unlike for the other kinds
  print_bbu_list(lists.cur(), lists.cur_count(), "cur_bbu_list");
  lists.rotate(lists.cached_count());
  print_bbu_list(lists.cached(), lists.cached_count(), "After swap, cached_BBU_list");

  *len = Layout::length(header->count);
  return MC_STORE_SUCCESS;
}

}  // namespace mcserver::raid::bbus
