// Controller records and replies, byte by byte.
#pragma once

#include <string>
#include <vector>

#include "host/bytes.h"

namespace tests {

inline constexpr char kControllerStore[] = "/var/storctlr_info";
inline constexpr uint32_t kControllerSize = 1294;  // a record's; every other size follows from it
inline constexpr uint32_t kControllerHeaderSize = 18;
inline constexpr uint32_t kControllerFileHeaderSize = 1;

constexpr uint32_t controller_reply_size(size_t records) {
  return static_cast<uint32_t>(kControllerHeaderSize + records * kControllerSize);
}
constexpr uint32_t controller_file_size(size_t records) {
  return static_cast<uint32_t>(kControllerFileHeaderSize + records * kControllerSize);
}
// The host is asked for the file and a header.
constexpr uint32_t controller_room(size_t records) { return controller_file_size(records) + kControllerHeaderSize; }

// What most tests care about; the other bytes are zero.
struct Controller {
  uint8_t index = 0;
  std::string name = "SLOT-0";
  std::string serial = "SERIAL-0";
  uint16_t vendor_id = 0x1000;
  uint16_t device_id = 0x005D;
  uint16_t subvendor_id = 0x1014;
  uint16_t subdevice_id = 0x0454;
  uint8_t type = 7;
  uint32_t stamp = 1;
  uint8_t is_supported = 1;

  Bytes in(Bytes::Order order) const {
    return Bytes::repeated(kControllerSize, 0)
        .put(0, Bytes().u8(index))
        .put(1, Bytes().text(name, 16))
        .put(104, Bytes().u8(is_supported))
        .put(107, Bytes().text(serial, 31))
        .put(255, Bytes(order).u16(vendor_id).u16(device_id).u16(subvendor_id).u16(subdevice_id))
        .put(827, Bytes(order).u32(stamp))
        .put(833, Bytes().u8(type));
  }
  Bytes stored() const { return in(Bytes::Order::kLittle); }
  Bytes reported() const { return in(Bytes::Order::kBig); }
};

// One of several controllers that differ in index, name and serial number.
inline Controller numbered(size_t number, uint32_t stamp = 1) {
  return {.index = static_cast<uint8_t>(number),
          .name = "SLOT-" + std::to_string(number),
          .serial = "SERIAL-" + std::to_string(number),
          .stamp = stamp};
}

// The first so many of them.
inline std::vector<Controller> numbered_below(size_t count) {
  std::vector<Controller> controllers;
  for (size_t number = 0; number < count; ++number) controllers.push_back(numbered(number));
  return controllers;
}

inline Bytes controller_file(uint8_t state, const std::vector<Controller> &controllers) {
  Bytes file = Bytes().u8(state);
  for (const Controller &controller : controllers) file += controller.stored();
  return file;
}

// What the plug-in writes of a controller that is gone, over what the slot held before.
inline Bytes gone(const Controller &controller, Bytes slot) {
  return slot.put(0, Bytes().u8(controller.index))
      .put(1, Bytes().text(controller.name, 16))
      .put(104, Bytes().u8(1))
      .put(106, Bytes().u8(4))
      .put(107, Bytes().text(controller.serial, 31))
      .put(255, big_endian()
                    .u16(controller.vendor_id)
                    .u16(controller.device_id)
                    .u16(controller.subvendor_id)
                    .u16(controller.subdevice_id))
      .put(833, Bytes().u8(controller.type));
}

// A reply's first 18 bytes; the last eight are not the plug-in's.
inline Bytes controller_header(uint8_t state, uint8_t count, uint8_t untouched = 0xA5) {
  return big_endian().u8(0x28).u8(0).u8(0).u8(state).u8(count).u32(kControllerSize).u8(0).fill(8, untouched);
}

// A whole reply, in a buffer that the host did not replace.
inline Bytes controller_reply(uint8_t state, const std::vector<Controller> &controllers) {
  Bytes reply = controller_header(state, static_cast<uint8_t>(controllers.size()));
  for (const Controller &controller : controllers) reply += controller.reported();
  return reply;
}

inline Bytes untouched_slot() { return Bytes::repeated(kControllerSize, 0xA5); }

// A text that fills its field and has no terminator.
inline std::string filling(size_t width, char letter) { return std::string(width, letter); }

}  // namespace tests
