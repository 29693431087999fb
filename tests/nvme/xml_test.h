// The base of the tests of what an image is as XML.
#pragma once

#include <string>
#include <vector>

#include "nvme/nvme_test.h"

namespace tests {

// The room that each record has, and how much of it text may be: a NUL ends it.
inline constexpr uint32_t kSummaryRoom = 100;
inline constexpr uint32_t kRecordRoom = 1024;

using Renderer = void(const uint8_t *image, char *out, uint32_t *size);

struct Rendered {
  std::string text;
  uint32_t size;
};

class XmlTest : public PluginTest {
 protected:
  auto renderer(const std::string &name) { return plugin(static_cast<Renderer *>(nullptr), name); }

  // Renders into a buffer of exactly that many bytes.
  Rendered render(const std::string &name, const Bytes &image, uint32_t capacity) {
    const std::vector<uint8_t> exactly(image.data(), image.data() + image.size());
    std::vector<char> out(capacity, '?');
    uint32_t size = capacity;
    renderer(name)(exactly.data(), out.data(), &size);
    return {std::string(out.data(), size), size};
  }

  static uint32_t room_for(size_t records) { return static_cast<uint32_t>(records) * kRecordRoom + kSummaryRoom; }
};

}  // namespace tests
