// What stands before the records in the packed replies, in the order of the bytes. No dump shows a header.
#pragma once

#include "mcserver_storage.h"
#include "shared/field.h"
#include "shared/field_proofs.h"

namespace mcserver::records {

inline constexpr auto kControllerReplyHeader = std::to_array<Field>({
    FIELD(StoreReplyHeader, type, kUnprinted),
    FIELD(StoreReplyHeader, zero_1, kUnprinted),
    FIELD(StoreReplyHeader, state, kUnprinted),
    FIELD(StoreReplyHeader, count, kUnprinted),
    FIELD(StoreReplyHeader, record_size, kUnprinted),
    FIELD(StoreReplyHeader, zero_2, kUnprinted),
    FIELD(StoreReplyHeader, unwritten, kUnprinted),
});
static_assert(covers<StoreReplyHeader, kControllerReplyHeader>());

inline constexpr auto kDriveReplyHeader = std::to_array<Field>({
    FIELD(PhyDriveReplyHeader, type, kUnprinted),
    FIELD(PhyDriveReplyHeader, zero_1, kUnprinted),
    FIELD(PhyDriveReplyHeader, simulated, kUnprinted),
    FIELD(PhyDriveReplyHeader, announced, kUnprinted),
    FIELD(PhyDriveReplyHeader, count, kUnprinted),
    FIELD(PhyDriveReplyHeader, record_size, kUnprinted),
    FIELD(PhyDriveReplyHeader, zero_2, kUnprinted),
    FIELD(PhyDriveReplyHeader, unwritten, kUnprinted),
});
static_assert(covers<PhyDriveReplyHeader, kDriveReplyHeader>());

inline constexpr auto kVirtualDriveReplyHeader = std::to_array<Field>({
    FIELD(VirtDriveReplyHeader, type, kUnprinted),
    FIELD(VirtDriveReplyHeader, zero_1, kUnprinted),
    FIELD(VirtDriveReplyHeader, eight, kUnprinted),
    FIELD(VirtDriveReplyHeader, count, kUnprinted),
    FIELD(VirtDriveReplyHeader, record_size, kUnprinted),
    FIELD(VirtDriveReplyHeader, zero_2, kUnprinted),
    FIELD(VirtDriveReplyHeader, unwritten, kUnprinted),
});
static_assert(covers<VirtDriveReplyHeader, kVirtualDriveReplyHeader>());

inline constexpr auto kBbuReplyHeader = std::to_array<Field>({
    FIELD(BbuReplyHeader, type, kUnprinted),
    FIELD(BbuReplyHeader, zero_1, kUnprinted),
    FIELD(BbuReplyHeader, simulated, kUnprinted),
    FIELD(BbuReplyHeader, count, kUnprinted),
    FIELD(BbuReplyHeader, record_size, kUnprinted),
    FIELD(BbuReplyHeader, zero_2, kUnprinted),
    FIELD(BbuReplyHeader, unwritten, kUnprinted),
});
static_assert(covers<BbuReplyHeader, kBbuReplyHeader>());

// Known from the simulated reply alone.
struct MC_STORE_PACKED ExpanderReplyHeader {
  uint8_t zero_1[2];
  uint8_t count;
  uint32_t record_size;
  uint8_t zero_2;
  uint8_t unwritten[8];
};

inline constexpr auto kExpanderReplyHeader = std::to_array<Field>({
    FIELD(ExpanderReplyHeader, zero_1, kUnprinted),
    FIELD(ExpanderReplyHeader, count, kUnprinted),
    FIELD(ExpanderReplyHeader, record_size, kUnprinted),
    FIELD(ExpanderReplyHeader, zero_2, kUnprinted),
    FIELD(ExpanderReplyHeader, unwritten, kUnprinted),
});
static_assert(covers<ExpanderReplyHeader, kExpanderReplyHeader>());

}  // namespace mcserver::records
