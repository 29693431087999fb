// The fuzzer's bytes, spent one choice after the other; zeros when they run out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

class Choices {
 public:
  Choices(const uint8_t *data, size_t size) : data_(data), left_(size) {}

  bool exhausted() const { return left_ == 0; }
  uint8_t byte();
  uint16_t number() { return static_cast<uint16_t>(byte() | byte() << 8); }
  uint8_t below(size_t count) { return static_cast<uint8_t>(byte() % count); }
  std::string bytes(size_t count);  // fewer when they run out

 private:
  const uint8_t *data_;
  size_t left_;
};

inline uint8_t Choices::byte() {
  if (left_ == 0) return 0;
  --left_;
  return *data_++;
}

inline std::string Choices::bytes(size_t count) {
  const size_t taken = count < left_ ? count : left_;
  std::string result(data_, data_ + taken);
  data_ += taken;
  left_ -= taken;
  return result;
}

}  // namespace fuzz
