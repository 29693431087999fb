#include "host/bytes.h"

#include <algorithm>
#include <iomanip>
#include <stdexcept>

namespace tests {

Bytes Bytes::hex(std::string_view digits) {
  Bytes bytes;
  std::string pair;
  for (const char digit : digits) {
    if (digit == ' ') continue;
    pair += digit;
    if (pair.size() < 2) continue;
    bytes.u8(std::stoul(pair, nullptr, 16));
    pair.clear();
  }
  return bytes;
}

Bytes &Bytes::number(uint64_t value, size_t width) {
  for (size_t i = 0; i < width; ++i) {
    const size_t place = order_ == Order::kLittle ? i : width - 1 - i;
    bytes_.push_back(static_cast<uint8_t>(value >> (8 * place)));
  }
  return *this;
}

Bytes &Bytes::text(std::string_view text, size_t width) {
  if (text.size() > width) throw std::invalid_argument("text is wider than its field");
  bytes_.insert(bytes_.end(), text.begin(), text.end());
  return fill(width - text.size(), 0);
}

Bytes &Bytes::fill(size_t count, uint8_t byte) {
  bytes_.insert(bytes_.end(), count, byte);
  return *this;
}

Bytes &Bytes::operator+=(const Bytes &more) {
  bytes_.insert(bytes_.end(), more.bytes_.begin(), more.bytes_.end());
  return *this;
}

Bytes &Bytes::put(size_t offset, const Bytes &bytes) {
  if (offset + bytes.size() > size()) throw std::out_of_range("bytes do not fit there");
  std::copy(bytes.bytes_.begin(), bytes.bytes_.end(), bytes_.begin() + static_cast<ptrdiff_t>(offset));
  return *this;
}

Bytes &Bytes::put_text(size_t offset, std::string_view text) {
  return put(offset, Bytes().text(text, text.size() + 1));
}

Bytes Bytes::slice(size_t offset, size_t count) const {
  if (offset + count > size()) throw std::out_of_range("no such bytes");
  const auto first = bytes_.begin() + static_cast<ptrdiff_t>(offset);
  return Bytes(std::vector<uint8_t>(first, first + static_cast<ptrdiff_t>(count)));
}

Bytes with_numbers_reversed(const Bytes &record, const Bytes &little_endian, const Bytes &big_endian) {
  const auto reversed = [](const Bytes &bytes, size_t offset, size_t width) {
    Bytes result;
    for (size_t i = width; i > 0; --i) result.u8(bytes[offset + i - 1]);
    return result;
  };

  Bytes result;
  while (result.size() < record.size()) {
    const size_t offset = result.size();
    size_t width = 1;
    while (reversed(little_endian, offset, width) != big_endian.slice(offset, width)) width *= 2;
    result += reversed(record, offset, width);
  }
  return result;
}

void PrintTo(const Bytes &bytes, std::ostream *out) {
  const std::ios_base::fmtflags flags = out->flags();
  *out << bytes.size() << " bytes" << std::hex << std::setfill('0');
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (i % 16 == 0) *out << '\n' << std::setw(4) << i << ": ";
    *out << ' ' << std::setw(2) << static_cast<unsigned>(bytes[i]);
  }
  out->flags(flags);
}

}  // namespace tests
