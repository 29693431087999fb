// Physical drive records and replies, byte by byte.
#pragma once

#include <string>
#include <vector>

#include "host/bytes.h"

namespace tests {

inline constexpr char kDriveStore[] = "/var/storphydrive_info";
inline constexpr uint32_t kDriveSize = 453;  // a record's; every other size follows from it
inline constexpr uint32_t kDriveHeaderSize = 20;
inline constexpr uint32_t kDriveFileHeaderSize = 4;

constexpr uint32_t drive_reply_size(size_t records) {
  return static_cast<uint32_t>(kDriveHeaderSize + records * kDriveSize);
}
constexpr uint32_t drive_file_size(size_t records) {
  return static_cast<uint32_t>(kDriveFileHeaderSize + records * kDriveSize);
}
// The host is asked for the file, every announced drive once more, and a header; in 32 bits.
constexpr uint32_t drive_room(size_t records, uint32_t announced) {
  return drive_file_size(records) + announced * kDriveSize + kDriveHeaderSize;
}

// What most tests care about; the other bytes are zero.
struct Drive {
  uint8_t controller = 0;
  uint8_t slot = 0;
  std::string serial = "SERIAL-0";
  uint32_t stamp = 1;
  uint8_t status = 5;

  Bytes in(Bytes::Order order) const {
    return Bytes::repeated(kDriveSize, 0)
        .put(0, Bytes().u8(controller).u8(slot))
        .put(81, Bytes().text(serial, 21))
        .put(102, Bytes().u8(status))
        .put(128, Bytes(order).u32(stamp));
  }
  Bytes stored() const { return in(Bytes::Order::kLittle); }
  Bytes reported() const { return in(Bytes::Order::kBig); }
};

// One of several drives that differ in slot and serial number.
inline Drive numbered_drive(size_t number, uint32_t stamp = 1) {
  return {.controller = static_cast<uint8_t>(number >> 8),
          .slot = static_cast<uint8_t>(number),
          .serial = "SERIAL-" + std::to_string(number),
          .stamp = stamp};
}

// The first so many of them.
inline std::vector<Drive> drives_below(size_t count) {
  std::vector<Drive> drives(count);
  for (size_t number = 0; number < count; ++number) drives[number] = numbered_drive(number);
  return drives;
}

inline Bytes drive_file(uint32_t announced, const std::vector<Drive> &drives) {
  Bytes file = little_endian().u32(announced);
  for (const Drive &drive : drives) file += drive.stored();
  return file;
}

// What the plug-in writes of a drive that is gone, over what the slot held before: 24 bytes.
inline Bytes gone_drive(const Drive &drive, Bytes slot) {
  return slot.put(0, Bytes().u8(drive.controller).u8(drive.slot))
      .put(81, Bytes().text(drive.serial, 21))
      .put(102, Bytes().u8(14));
}

inline Bytes untouched_drive_slot() { return Bytes::repeated(kDriveSize, 0xA5); }

// A reply's first 20 bytes; the last eight are not the plug-in's.
inline Bytes drive_header(uint32_t announced, uint16_t count, uint8_t untouched = 0xA5) {
  return big_endian().u8(0x28).u8(0).u8(0).u16(announced & 0xFFFF).u16(count).u32(kDriveSize).u8(0).fill(8, untouched);
}

// A whole reply, in a buffer that the host did not replace.
inline Bytes drive_reply(uint32_t announced, const std::vector<Drive> &drives) {
  Bytes reply = drive_header(announced, static_cast<uint16_t>(drives.size()));
  for (const Drive &drive : drives) reply += drive.reported();
  return reply;
}

}  // namespace tests
