// The base of the tests that read the flash module's image.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "raid/bbus/bbu_test.h"

namespace tests {

inline constexpr size_t kVendor = 89;
inline constexpr size_t kModel = 109;
inline constexpr size_t kSerial = 129;
inline constexpr size_t kRevision = 145;

// A record in which every byte that is written shows, unless it is a dot.
inline Bytes record_of_dots() { return Bytes::repeated(kBbuSize, '.'); }

inline Bytes blank_image() { return Bytes::repeated(kImageSize, 0); }

// The board area at byte 8 and in it, from byte 14 on, these fields.
inline Bytes image_of(const Bytes &fields) { return blank_image().put(3, Bytes().u8(1)).put(14, fields); }

// What the walk makes of any image. Room is plenty here; what the plug-in must not reach is cut off in the end.
inline Bytes with_image(const Bytes &record, const Bytes &image) {
  uint8_t memory[512] = {};
  for (size_t i = 0; i < kImageSize; ++i) memory[i] = image[i];
  uint8_t result[kBbuSize + 64];
  for (size_t i = 0; i < kBbuSize; ++i) result[i] = record[i];

  unsigned p = (memory[3] * 8u + 6u) % 256u;
  for (const size_t field : {kVendor, kModel, kSerial}) {
    const unsigned length = memory[p] % 64u;
    const unsigned data = (p + 1u) % 256u;
    for (unsigned i = 0; i < length; ++i) result[field + i] = memory[data + i];
    result[field + length] = 0;
    p = (p + 1u + length) % 256u;
  }
  p = (p + 1u + memory[p] % 64u) % 256u;
  const unsigned q = (p + memory[p] % 64u + 2u) % 256u;

  std::string revision = "P[";
  for (const unsigned k : {0u, 1u}) revision += static_cast<char>(memory[q + k]);
  revision += "]F[" + std::to_string(int{memory[q + 2]}) + "]V[";
  for (const unsigned k : {3u, 4u, 5u}) revision += static_cast<char>(memory[q + k]);
  revision += "]";
  for (size_t i = 0; i < 15; ++i) result[kRevision + i] = static_cast<uint8_t>(revision[i]);
  result[kRevision + 15] = 0;
  return Bytes(std::vector<uint8_t>(result, result + kBbuSize));
}

class FlashModuleTest : public BbuTest {
 protected:
  // What becomes of a record. Behind it lie other bytes, which are nobody's business.
  Bytes read_into(const Bytes &record) {
    constexpr size_t kBehind = 128;
    std::vector<uint8_t> memory(kBbuSize + kBehind, 0xEE);
    std::copy_n(record.data(), kBbuSize, memory.begin());
    PLUGIN(read_tarvo_tfm_vpd)(reinterpret_cast<StorBbuInfo *>(memory.data()), 0);
    EXPECT_TRUE(std::all_of(memory.begin() + kBbuSize, memory.end(), [](uint8_t byte) { return byte == 0xEE; }));
    return Bytes(std::vector<uint8_t>(memory.begin(), memory.begin() + kBbuSize));
  }
  Bytes read(const Bytes &image) {
    files.write(kFlashModuleImage, image);
    return read_into(record_of_dots());
  }
};

}  // namespace tests
