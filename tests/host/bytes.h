// Bytes written out by hand: what a store file holds, and what a reply must hold. Independent of the code under test.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

class Bytes {
 public:
  enum class Order { kLittle, kBig };

  Bytes() = default;
  explicit Bytes(Order order) : order_(order) {}
  explicit Bytes(std::vector<uint8_t> bytes) : bytes_(std::move(bytes)) {}

  static Bytes repeated(size_t count, uint8_t byte) { return Bytes(std::vector<uint8_t>(count, byte)); }

  // "28 00 0a": blanks do not matter.
  static Bytes hex(std::string_view digits);

  // Each of these appends.
  Bytes &u8(uint64_t value) { return number(value, 1); }
  Bytes &u16(uint64_t value) { return number(value, 2); }
  Bytes &u32(uint64_t value) { return number(value, 4); }
  Bytes &u64(uint64_t value) { return number(value, 8); }
  Bytes &text(std::string_view text, size_t width);  // padded with NULs
  Bytes &fill(size_t count, uint8_t byte);
  Bytes &operator+=(const Bytes &more);
  friend Bytes operator+(Bytes left, const Bytes &right) { return left += right; }

  // Each of these overwrites what stands at the offset.
  Bytes &put(size_t offset, const Bytes &bytes);
  Bytes &put_text(size_t offset, std::string_view text);  // with its terminator, and nothing after it

  Bytes slice(size_t offset, size_t count) const;

  size_t size() const { return bytes_.size(); }
  const uint8_t *data() const { return bytes_.data(); }
  uint8_t operator[](size_t offset) const { return bytes_.at(offset); }

  bool operator==(const Bytes &other) const { return bytes_ == other.bytes_; }

 private:
  Bytes &number(uint64_t value, size_t width);

  Order order_ = Order::kLittle;
  std::vector<uint8_t> bytes_;
};

// The record with the bytes of each number reversed. Which bytes are a number shows in a record that is written out in
// both orders, and in which no number begins and ends with the same byte.
Bytes with_numbers_reversed(const Bytes &record, const Bytes &little_endian, const Bytes &big_endian);

// Lines of 16 bytes, each with its offset.
void PrintTo(const Bytes &bytes, std::ostream *out);

inline Bytes little_endian() { return Bytes(Bytes::Order::kLittle); }
inline Bytes big_endian() { return Bytes(Bytes::Order::kBig); }

}  // namespace tests
