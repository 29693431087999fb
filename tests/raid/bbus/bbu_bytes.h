// BBU records and replies, and the flash module's image, byte by byte.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/bytes.h"

namespace tests {

inline constexpr char kStorageLock[] = "/var/storctlr_info";
inline constexpr char kBbuStore[] = "/var/storBBU_info";
inline constexpr char kFlashModuleImage[] = "/var/log/TFM_FRU.bin";
inline constexpr uint32_t kBbuSize = 161;  // a record's; every other size follows from it
inline constexpr uint32_t kBbuHeaderSize = 17;
inline constexpr size_t kImageSize = 128;

// The length of a reply, which is also what a file of so many records needs.
constexpr uint32_t bbu_reply_size(size_t records) { return static_cast<uint32_t>(kBbuHeaderSize + records * kBbuSize); }

// What most tests care about; the other bytes are zero.
struct Bbu {
  uint8_t controller = 0;
  std::string name = "BBU-0";
  uint16_t serial = 0x1234;
  uint8_t capacitor = 0;
  uint16_t full_capacity = 0x0506;       // of a battery; a capacitor's bytes there are not used
  uint16_t remaining_capacity = 0x0304;  // little-endian wherever it stands
  uint32_t stamp = 1;
  std::string vendor = "Collected vendor";
  std::string model = "Collected model";

  Bytes in(Bytes::Order order) const {
    Bytes record = Bytes::repeated(kBbuSize, 0)
                       .put(0, Bytes().u8(controller))
                       .put(4, Bytes().text(name, 8))
                       .put(43, Bytes(order).u16(serial))
                       .put(72, Bytes().u8(capacitor))
                       .put(85, Bytes(order).u32(stamp))
                       .put(89, Bytes().text(vendor, 20))
                       .put(109, Bytes().text(model, 20));
    if (capacitor) return record;
    return record.put(79, Bytes(order).u16(full_capacity)).put(81, little_endian().u16(remaining_capacity));
  }
  Bytes stored() const { return in(Bytes::Order::kLittle); }
  Bytes reported() const { return in(Bytes::Order::kBig); }
};

// One of several BBUs that differ in their controller; every third is a capacitor.
inline Bbu bbu_of(size_t controller, uint32_t stamp = 1) {
  return {.controller = static_cast<uint8_t>(controller),
          .name = "BBU-" + std::to_string(controller % 1000),
          .serial = static_cast<uint16_t>(0x0100 + controller),
          .capacitor = static_cast<uint8_t>(controller % 3 == 2 ? 1 : 0),
          .stamp = stamp};
}

// Those of the first so many controllers. From the 257th on, the controllers are the first ones again.
inline std::vector<Bbu> bbus_below(size_t count) {
  std::vector<Bbu> bbus(count);
  for (size_t controller = 0; controller < count; ++controller) bbus[controller] = bbu_of(controller);
  return bbus;
}

inline Bytes bbu_file(const std::vector<Bbu> &bbus) {
  Bytes file;
  for (const Bbu &bbu : bbus) file += bbu.stored();
  return file;
}

// A reply's first 17 bytes; the last eight are not the plug-in's.
inline Bytes bbu_header(uint8_t count, uint8_t untouched = 0xA5) {
  return big_endian().u8(0x28).u8(0).u8(0).u8(count).u32(kBbuSize).u8(0).fill(8, untouched);
}

// A whole reply; `untouched` is what the buffer held.
inline Bytes bbu_reply(const std::vector<Bbu> &bbus, uint8_t untouched = 0xA5) {
  Bytes reply = bbu_header(static_cast<uint8_t>(bbus.size()), untouched);
  for (const Bbu &bbu : bbus) reply += bbu.reported();
  return reply;
}

inline Bytes untouched_bbu_slot() { return Bytes::repeated(kBbuSize, 0xA5); }

// A field of the flash module's image: a byte for the type, in the upper two bits, and the length, and the data.
inline Bytes image_field(std::string_view data, uint8_t type = 3) {
  return Bytes().u8(type * size_t{64} + data.size()).text(data, data.size());
}

// An image as a module delivers it: the board area begins at byte 8, its fields at byte 14.
inline Bytes flash_module_image() {
  return Bytes::repeated(kImageSize, 0)
      .put(0, Bytes::hex("01 00 00 01 00 00 00 FE"))  // the common header; the fourth byte is the board area's place
      .put(8, Bytes::hex("01 0E 19 11 22 33"))        // the board area's version, length, language and date
      .put(14, image_field("Tarvo") + image_field("TFM-16G") + image_field("SN0042") + image_field("PART-NUMBER") +
                   image_field("FILE") +
                   image_field("AB\x01"
                               "CDE and more") +
                   Bytes().u8(0xC1));
}

// What that image makes of a record. Only the bytes up to a text's NUL are written.
inline Bytes with_flash_module(Bytes record) {
  return record.put_text(89, "Tarvo").put_text(109, "TFM-16G").put_text(129, "SN0042").put_text(145, "P[AB]F[1]V[CDE]");
}

}  // namespace tests
