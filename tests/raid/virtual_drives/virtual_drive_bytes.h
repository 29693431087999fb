// Virtual drive records and replies, byte by byte.
#pragma once

#include <string>
#include <vector>

#include "host/bytes.h"

namespace tests {

inline constexpr char kVirtualDriveStore[] = "/var/storvirtdrive_info";
inline constexpr uint32_t kVirtualDriveSize = 5799;  // a record's; every other size follows from it
inline constexpr uint32_t kVirtualDriveHeaderSize = 17;

// The length of a reply, which is also what a file of so many records needs.
constexpr uint32_t length_of(size_t records) {
  return static_cast<uint32_t>(kVirtualDriveHeaderSize + records * kVirtualDriveSize);
}

// A time stamp that reads the same in both byte orders, and one that does not: a delta tells a drive with the second
// one again whenever the file was written.
inline constexpr uint32_t kSymmetric = 0x01000001;
inline constexpr uint32_t kOrdinary = 0x12345678;

// What most tests care about; the other bytes are zero.
struct VirtualDrive {
  uint8_t controller = 0;
  uint8_t target = 0;
  std::string guid = "GUID-0";
  std::string name = "volume-0";
  uint8_t status = 3;
  uint64_t size = 0x0102030405060708;
  uint16_t raid_level = 0x0105;
  uint32_t stamp = kSymmetric;

  // `first` is what is converted before a record is compared, `last` what only when it is reported.
  Bytes in(Bytes::Order first, Bytes::Order last) const {
    return Bytes::repeated(kVirtualDriveSize, 0)
        .put(0, Bytes().u8(controller).u8(target))
        .put(2, Bytes().text(guid, 33))
        .put(35, Bytes().text(name, 16))
        .put(51, Bytes().u8(status))
        .put(52, Bytes(last).u64(size))
        .put(60, Bytes(first).u16(raid_level))
        .put(5254, Bytes(first).u32(stamp));
  }
  Bytes stored() const { return in(Bytes::Order::kLittle, Bytes::Order::kLittle); }
  Bytes reported() const { return in(Bytes::Order::kBig, Bytes::Order::kBig); }
  // What a delta leaves in the slot of a record that it does not report.
  Bytes skipped() const { return in(Bytes::Order::kBig, Bytes::Order::kLittle); }
};

// One of several virtual drives that differ in all that names them.
inline VirtualDrive volume(size_t number, uint32_t stamp = kSymmetric) {
  return {.controller = static_cast<uint8_t>(number >> 8),
          .target = static_cast<uint8_t>(number),
          .guid = "GUID-" + std::to_string(number),
          .name = "volume-" + std::to_string(number),
          .stamp = stamp};
}

// The first so many of them.
inline std::vector<VirtualDrive> volumes_below(size_t count, uint32_t stamp = kSymmetric) {
  std::vector<VirtualDrive> volumes(count);
  for (size_t number = 0; number < count; ++number) volumes[number] = volume(number, stamp);
  return volumes;
}

// The file is nothing but records.
inline Bytes virtual_drive_file(const std::vector<VirtualDrive> &drives) {
  Bytes file;
  for (const VirtualDrive &drive : drives) file += drive.stored();
  return file;
}

// A reply's first 17 bytes; the last eight are not the plug-in's.
inline Bytes virtual_drive_header(uint8_t count, uint8_t untouched = 0xA5) {
  return big_endian().u8(0x28).u8(0).u8(8).u8(count).u32(kVirtualDriveSize).u8(0).fill(8, untouched);
}

// A whole reply; `untouched` is what the buffer held.
inline Bytes virtual_drive_reply(const std::vector<VirtualDrive> &drives, uint8_t untouched = 0xA5) {
  Bytes reply = virtual_drive_header(static_cast<uint8_t>(drives.size()), untouched);
  for (const VirtualDrive &drive : drives) reply += drive.reported();
  return reply;
}

inline Bytes untouched_virtual_drive_slot(uint8_t untouched = 0xA5) {
  return Bytes::repeated(kVirtualDriveSize, untouched);
}

// What the plug-in writes of a drive that is gone, over what the slot held before: five fields.
inline Bytes gone_virtual_drive(const VirtualDrive &drive, Bytes slot = untouched_virtual_drive_slot()) {
  return slot.put(0, Bytes().u8(drive.controller).u8(drive.target))
      .put(2, Bytes().text(drive.guid, 33))
      .put(35, Bytes().text(drive.name, 16))
      .put(51, Bytes().u8(6));
}

// The time stamp that a log line reads in a slot that nobody wrote.
inline constexpr char kUntouchedStamp[] = "-1515870811";

inline std::string gone_line(const VirtualDrive &drive, const std::string &stale_stamp = kUntouchedStamp) {
  return "mcserver_storage.cpp:1744:Deleted-Event VD TargetID=" + std::to_string(drive.target) +
         ", name=" + drive.name + " mod_timestamp=" + stale_stamp + "\n";
}

}  // namespace tests
