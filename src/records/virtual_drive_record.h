// The virtual drive record's layout, in the order of its bytes. Byte order, dumps and the tool's columns follow from
// it.
#pragma once

#include <limits>

#include "mcserver_storage.h"
#include "records/kind_facts.h"
#include "records/words.h"
#include "shared/field.h"
#include "shared/field_proofs.h"

namespace mcserver::records {

inline constexpr auto kMemberDrive = std::to_array<Field>({
    FIELD(VdDriveRef, controller_index, "PD[%d].controller_index = %d\n"),
    FIELD(VdDriveRef, slot_number, "PD[%d].slot_number = %d\n"),
});
static_assert(sizeof(VdDriveRef) == 2 && describes_entry<VdDriveRef, kMemberDrive>());

inline constexpr auto kMemberDriveV5 = std::to_array<Field>({
    FIELD(VdDriveRef, controller_index, "PD_v5[%d].controller_index = %d\n"),
    FIELD(VdDriveRef, slot_number, "PD_v5[%d].slot_number = %d\n"),
});
static_assert(describes_entry<VdDriveRef, kMemberDriveV5>());

inline constexpr auto kHotSpare = std::to_array<Field>({
    FIELD(VdHotSpare, controller_index, "HotSpare[%d].controller_index = %d\n"),
    FIELD(VdHotSpare, slot_number, "HotSpare[%d].slot_number = %d\n"),
    FIELD(VdHotSpare, span, "HotSpare[%d].span = %d\n"),
    FIELD(VdHotSpare, starting_block, "HotSpare[%d].starting block = %lld\n"),
    FIELD(VdHotSpare, number_of_blocks, "HotSpare[%d].number of blocks = %lld\n"),
    // Log tooling knows the tail by the name of another field.
    FIELD(VdHotSpare, hot_spare_tail_byte, "HotSpare[%d].slot_number = %d\n"),
});
static_assert(sizeof(VdHotSpare) == 20 && describes_entry<VdHotSpare, kHotSpare>());

inline constexpr EntryTable kMemberDrives = {kMemberDrive, sizeof(VdDriveRef), "num_physical_drives"};
inline constexpr EntryTable kMemberDrivesV5 = {kMemberDriveV5, sizeof(VdDriveRef), "num_physical_drives"};
inline constexpr EntryTable kHotSpares = {kHotSpare, sizeof(VdHotSpare), "num_hot_spares"};

inline constexpr auto kVirtualDrive = std::to_array<Field>({
    FIELD(StorVirtDriveInfo, controller_index, "Controller index = %d\n"),
    FIELD(StorVirtDriveInfo, target_id, "Target ID = %d\n"),
    FIELD(StorVirtDriveInfo, guid, "GUID = %s\n"),
    FIELD(StorVirtDriveInfo, name, "Name = %s\n"),
    FIELD(StorVirtDriveInfo, status,
          "Status = %d (0: optimal, 1: cacheDegraded, 2:Partially degraded, 3:Degraded 4:OFFLine 5:UNK\n",
          {.words = kVirtualDriveStatuses}),
    FIELD(StorVirtDriveInfo, size, "Size = %lld\n", {.unit = Unit::kBytes}),
    FIELD(StorVirtDriveInfo, raid_level, "Raid Level = 0x%x\n", {.base = Base::kHexadecimal}),
    FIELD(StorVirtDriveInfo, strip_size, "Strip size = %d\n", {.unit = Unit::kBytes}),
    FIELD(StorVirtDriveInfo, drives_per_span, "Drive per span = %d\n"),
    FIELD(StorVirtDriveInfo, span_depth, "Span Depth = %d\n"),
    FIELD(StorVirtDriveInfo, access_policy, "Access policy = %d (0:RW, 1:UNK, 2:RO, 3:Blocked)\n",
          {.words = kAccessPolicies}),
    FIELD(StorVirtDriveInfo, io_policy, "IO Policy = %d (0:Direct 1:Cached)\n", {.words = kIoPolicies}),
    FIELD(StorVirtDriveInfo, read_ahead_policy, "Read ahead policy = %d (0:Ahead 1:Normal)\n",
          {.words = kReadAheadPolicies}),
    FIELD(StorVirtDriveInfo, current_write_cache_policy,
          "Current write cache policy = %d (0:UNK, 3:WB-Bad-BBU, 2:WriteBack 1:WriteThru)\n",
          {.words = kWriteCachePolicies}),
    FIELD(StorVirtDriveInfo, requested_write_cache_policy,
          "Requested write cache policy = %d (0:UNK, 3:WB-Bad-BBU, 2:WriteBack 1:WriteThru)\n",
          {.words = kWriteCachePolicies}),
    FIELD(StorVirtDriveInfo, drive_cache_policy, "Drive cache policy = %d (0:Unchanged, 1:Enable, 2:Disable\n",
          {.words = kDriveCachePolicies}),
    flag(FIELD(StorVirtDriveInfo, allow_background_init, "Allow background init: %s\n")),
    flag(FIELD(StorVirtDriveInfo, auto_snapshot, "Auto Snapshot: %s\n")),
    flag(FIELD(StorVirtDriveInfo, auto_delete_oldest, "Auto delete oldest: %s\n")),
    FIELD(StorVirtDriveInfo, num_physical_drives, "Num of physical drives =%d\n"),
    entries(kMemberDrives, FIELD(StorVirtDriveInfo, pd, kUnprinted)),
    FIELD(StorVirtDriveInfo, num_hot_spares, "Num of hot spare drives =%d\n"),
    entries(kHotSpares, FIELD(StorVirtDriveInfo, hot_spares, kUnprinted)),
    FIELD(StorVirtDriveInfo, remaining_space, "Remaining space = %lld\n", {.unit = Unit::kBytes}),
    FIELD(StorVirtDriveInfo, reconstruction_status, "Reconstruction status = %d\n"),
    FIELD(StorVirtDriveInfo, reconstruction_percent_complete, "Reconstruction percent complete = %d\n",
          {.unit = Unit::kPercent, .none = {255}}),
    FIELD(StorVirtDriveInfo, reconstruction_start_timestamp, "Reconstruction start timestamp = %d\n",
          {.unit = Unit::kTimeStamp, .none = {-1}}),
    FIELD(StorVirtDriveInfo, reconstruction_end_timestamp, "Reconstruction end timestamp = %d\n",
          {.unit = Unit::kTimeStamp, .none = {-1}}),
    FIELD(StorVirtDriveInfo, consistency_check_status, "Consistency chk opn progress status = %d\n"),
    FIELD(StorVirtDriveInfo, consistency_check_percent_complete, "Consistency chk opn progress percent complete = %d\n",
          {.unit = Unit::kPercent, .none = {255}}),
    FIELD(StorVirtDriveInfo, consistency_check_start_timestamp, "Consistency chk opn progress start timestamp = %d\n",
          {.unit = Unit::kTimeStamp, .none = {-1}}),
    FIELD(StorVirtDriveInfo, consistency_check_end_timestamp, "Consistency chk opn progress end timestamp = %d\n",
          {.unit = Unit::kTimeStamp, .none = {-1}}),
    FIELD(StorVirtDriveInfo, init_status, "Init opn progress status = %d\n"),
    FIELD(StorVirtDriveInfo, init_percent_complete, "Init opn progress percent complete = %d\n",
          {.unit = Unit::kPercent, .none = {255}}),
    FIELD(StorVirtDriveInfo, init_start_timestamp, "Init opn progress start timestamp = %d\n",
          {.unit = Unit::kTimeStamp, .none = {-1}}),
    FIELD(StorVirtDriveInfo, init_end_timestamp, "Init opn progress end timestamp = %d\n",
          {.unit = Unit::kTimeStamp, .none = {-1}}),
    flag(FIELD(StorVirtDriveInfo, boot_drive, "Boot drive: %s\n")),
    FIELD(StorVirtDriveInfo, mod_timestamp, "Mod timestamp = %d\n"),
    entries(kMemberDrivesV5, FIELD(StorVirtDriveInfo, pd_v5, kUnprinted)),
    FIELD(StorVirtDriveInfo, start_block_v12, "start_block_v12 = %lld (0x%llx)\n"),
    FIELD(StorVirtDriveInfo, span_block_count_v12, "span_block_count_v12 = %lld (0x%llx)\n"),
    FIELD(StorVirtDriveInfo, smallest_pd_block_count_v12, "smallest_pd_block_count_v12 = %lld (0x%llx)\n"),
    FIELD(StorVirtDriveInfo, pd_block_size_v12, "pd_block_size_v12 = %d (0x%x)\n", {.unit = Unit::kBytes}),
    FIELD(StorVirtDriveInfo, vd_sed_state, "VD SED state = 0x%x\n", {.base = Base::kBitSet}),
});
static_assert(sizeof(StorVirtDriveInfo) == 5799 && describes<StorVirtDriveInfo, kVirtualDrive>());
static_assert(sizeof(VdSummary) == 56);

inline constexpr auto kVirtualDriveIdentity = std::to_array<IdentityMember>({
    IDENTITY_MEMBER(StorVirtDriveInfo, VdSummary, guid),
});

inline constexpr KindFacts kVirtualDriveFacts = {
    .name = "virtual-drives",
    .lock_path = kRaidLockPath,
    .store_path = "/var/storvirtdrive_info",
    .identity = kVirtualDriveIdentity,
    .gone = {"status", MC_STORE_VIRTDRIVE_GONE},
    .greatest_count = std::numeric_limits<decltype(VirtDriveReplyHeader::count)>::max(),
};
static_assert(fits_table<kVirtualDrive, kVirtualDriveFacts>());

}  // namespace mcserver::records
