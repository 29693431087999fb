// Reads the controller store file into the host's reply, and tells what changed since the previous call.

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

#include "mcserver_storage.h"
#include "raid/controllers/reply.h"
#include "raid/gone_devices.h"
#include "raid/storage_lock.h"
#include "records/controller_record.h"
#include "shared/exported.h"
#include "shared/identity_index.h"
#include "shared/network_order.h"
#include "shared/record_reader.h"
#include "shared/reply_buffer.h"
#include "shared/summary_lists.h"
#include "shared/trace.h"

namespace mcserver::raid::controllers {
namespace {

constexpr char kFunction[] = "get_store_ctrls";
constexpr const records::KindFacts &kFacts = records::kControllerFacts;
constexpr int kReplyLimit = 65536;  // what the size trace compares with, whatever the host granted

// What the previous call left. The host runs one call of a kind at a time, so nothing guards it.
struct Baseline {
  time_t modified = 0;  // of the store file, at the last call that got it open
  int32_t state = 0;    // the subsystem state, at the last call that compared it
  SummaryLists<CtlrSummary> lists;
};
constinit Baseline baseline;

[[gnu::destructor]] void release_lists() { baseline.lists.release(); }

bool refuse_reply(uint32_t needed) {
  TRACE(kFunction, 869, "Data length(%d) larger than %d\n", static_cast<int>(needed), kReplyLimit);
  return false;
}

// Makes room for every record of the file. Whether to ask the host depends on the gone controllers too, but the
// request covers the file alone.
bool make_room_for_file(ReplyBuffer &reply, uint64_t file_size) {
  const uint64_t needed = file_size + Layout::kHeaderSize;
  const uint32_t low_bits = static_cast<uint32_t>(needed);
  if (needed > UINT32_MAX) return refuse_reply(low_bits);

  const uint64_t wanted = needed + uint64_t{Layout::kRecordSize} * baseline.lists.cached_count();
  if (wanted <= reply.size() || reply.grow(low_bits)) return true;
  return refuse_reply(low_bits);
}

void log_state_change(uint8_t state, time_t previous_modified) {
  const CtimeText previous_time(previous_modified);
  const CtimeText current_time(baseline.modified);
  SYSTEM_LOG(kStorageSource, 893,
             "Storage subsystem state changed, prevState(%d), newState(%d), prevModTime(%lld, %s), "
             "curModTime(%lld, %s)\n",
             baseline.state, state, static_cast<long long>(previous_modified), previous_time.c_str(),
             static_cast<long long>(baseline.modified), current_time.c_str());
}

void summarize(const StorCtlrInfo &record, CtlrSummary &entry) {
  entry.index = record.index;
  strncpy_s(entry.controller, sizeof entry.controller, record.controller, sizeof entry.controller);
  strncpy_s(entry.serial_number, sizeof entry.serial_number, record.serial_number, sizeof entry.serial_number);
  entry.vendor_id = record.vendor_id;
  entry.device_id = record.device_id;
  entry.subvendor_id = record.subvendor_id;
  entry.subdevice_id = record.subdevice_id;
  entry.controller_type = record.controller_type;
  entry.mod_timestamp = record.mod_timestamp;
}

// The record of a gone controller: what the summary kept of it. The other bytes stay as the buffer held them.
void write_gone(const CtlrSummary &entry, StorCtlrInfo *record) {
  record->index = entry.index;
  strncpy_s(record->controller, sizeof record->controller, entry.controller, sizeof entry.controller);
  strncpy_s(record->serial_number, sizeof record->serial_number, entry.serial_number, sizeof entry.serial_number);
  record->vendor_id = to_big_endian(entry.vendor_id);
  record->device_id = to_big_endian(entry.device_id);
  record->subvendor_id = to_big_endian(entry.subvendor_id);
  record->subdevice_id = to_big_endian(entry.subdevice_id);
  record->is_supported = 1;
  record->controller_type = entry.controller_type;
  record->controller_status = kFacts.gone.value;
}

using Index = IdentityIndex<StorCtlrInfo, CtlrSummary, records::kControllerIdentity>;

bool is_gone(const CtlrSummary &cached, const Index &cur) {
  const bool is_known = cached.serial_number[0] != '\0' && cached.vendor_id != 0 && cached.device_id != 0 &&
                        cached.subvendor_id != 0 && cached.subdevice_id != 0;
  return is_known && !cur.find(cached);
}

uint32_t count_gone(const Index &cur, std::span<const CtlrSummary> cached) {
  return static_cast<uint32_t>(
      std::count_if(cached.begin(), cached.end(), [&](const CtlrSummary &entry) { return is_gone(entry, cur); }));
}

}  // namespace

EXPORTED int32_t new_ctlr_or_modified(const StorCtlrInfo *record, const CtlrSummary *cached_list,
                                      uint16_t cached_count) {
  if (!record || !cached_list) return 0;
  return is_new_or_modified(Index::first_of(std::span(cached_list, cached_count), *record), record->mod_timestamp);
}

EXPORTED void add_deleted_ctlrs(uint8_t *reply, uint16_t cur_count, const CtlrSummary *cur_list, uint16_t cached_count,
                                const CtlrSummary *cached_list) {
  if (!reply || !cur_list || !cached_list) return;
  const Index cur({cur_list, cur_count});
  for (const CtlrSummary &entry : std::span(cached_list, cached_count))
    if (is_gone(entry, cur)) write_gone(entry, Layout::append(reply));
}

EXPORTED int32_t get_store_ctrls(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta) {
  if (!len) return MC_STORE_UNAVAILABLE;  // the host's error
  *len = 0;

  StoreFile store(kStorageLock);
  if (store.status() != MC_STORE_SUCCESS) return store.status();

  if (delta && store.modified() == baseline.modified) return MC_STORE_SUCCESS;
  const time_t previous_modified = std::exchange(baseline.modified, store.modified());  // even if a later step fails

  ReplyBuffer reply(ctx, buf, bufsize);
  if (!make_room_for_file(reply, store.size())) return MC_STORE_REPLY_TOO_LARGE;

  RecordReader reader(store);
  uint8_t state;
  if (!reader.read(&state, sizeof state)) return MC_STORE_NO_DATA;

  const bool state_changed = delta && state != baseline.state;
  if (state_changed) log_state_change(state, previous_modified);
  // A delta compares records only in one state; in any other, only a change of the state itself is news.
  if (delta && !state_changed && state != MC_STORE_STATE_READY) return MC_STORE_SUCCESS;
  baseline.state = state;

  SummaryLists<CtlrSummary> &lists = baseline.lists;
  switch (lists.reserve(static_cast<uint32_t>(store.size()) / Layout::kRecordSize)) {
    case ListSizing::kCurFailed:
      TRACE(kFunction, 917, "cur_ctlr_list memory allocation failed\n");
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kCachedFailed:
      TRACE(kFunction, 927, "cached_ctlr_list memory allocation failed\n");
      return MC_STORE_UNAVAILABLE;
    case ListSizing::kEnough:
      break;
  }

  if (!reply.bytes()) return MC_STORE_UNAVAILABLE;  // the host's error: no buffer, but the size of one
  write_header(reply.bytes(), state, 0, to_big_endian(Layout::kRecordSize));
  const Index known({lists.cached(), delta ? lists.comparable_count() : size_t{0}});
  uint32_t reported = 0;  // unlike the header's count, does not wrap
  // A record that is not counted is overwritten by the next one.
  while (StorCtlrInfo *record = reader.read_into(Layout::next_slot(reply.bytes()))) {
    if (!lists.exist()) {
      TRACE(kFunction, 955, "cur_ctlr_list= %p, cached_ctlr_list= %p\n", static_cast<const void *>(lists.cur()),
            static_cast<const void *>(lists.cached()));
      break;
    }
    print_ctlrinfo(record, nullptr);
    summarize(*record, lists.add());
    if (delta && !is_new_or_modified(known.find(*record), record->mod_timestamp)) continue;

    if (state_changed)
      SYSTEM_LOG(kStorageSource, 989, "Storage subsystem state changed, ctlr_index=%d, modTimestamp=%d\n",
                 record->index, record->mod_timestamp);
    to_network_order<records::kController>(record);
    Layout::header_of(reply.bytes())->count++;
    reported++;
  }

  // Both platforms are ready without a controller, which the host is to see as not ready.
  StoreReplyHeader *header = Layout::header_of(reply.bytes());
  if ((running_on_kestrano() || running_on_morvik()) && header->state == MC_STORE_STATE_READY && header->count == 0 &&
      lists.cached_count() == 0)
    header->state = MC_STORE_STATE_NOT_READY;

  if (!reader.at_end())
    SYSTEM_LOG(kStorageSource, 1054, "Error reading file %s, %s\n", kStorageLock.path, strerror(reader.error()));

  print_ctlr_list(lists.cur(), static_cast<int32_t>(lists.cur_count()), "cur_ctlr_list");
  print_ctlr_list(lists.cached(), lists.cached_count(), "cached_ctlr_list");

  if (delta) {
    // The comparison takes 16 bits of a count, as its interface always has.
    const auto cur_count = static_cast<uint16_t>(lists.cur_count());
    const uint16_t cached_count = lists.comparable_count();
    const auto gone = [&] { return count_gone(Index({lists.cur(), cur_count}), {lists.cached(), cached_count}); };
    if (lists.exist() && !make_room_for_gone<Layout>(reply, reported, cached_count, gone, refuse_reply))
      return MC_STORE_REPLY_TOO_LARGE;
    add_deleted_ctlrs(reply.bytes(), cur_count, lists.cur(), cached_count, lists.cached());
  }

  lists.rotate(lists.cached_count());
  print_ctlr_list(lists.cached(), lists.cached_count(), "After swap, cached_ctlr_list");
  store.release();
  *len = Layout::length(Layout::header_of(reply.bytes())->count);
  return MC_STORE_SUCCESS;
}

}  // namespace mcserver::raid::controllers
