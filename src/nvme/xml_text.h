// XML of one kind only: elements that have attributes and nothing else, one after the other, in a buffer of fixed size.
#pragma once

#include <cstdint>

#include "shared/compiled_rows.h"

namespace mcserver::nvme {

// The room that a reply of so many records must have: the format's budget.
constexpr uint32_t xml_capacity(uint32_t records) { return records * 1024 + 100; }

class XmlText {
 public:
  XmlText(char *out, uint32_t capacity) : out_(out), capacity_(capacity) {}

  void open(const char *element) { append("<%s ", element); }
  void attribute(const char *name, const char *value) { append("%s=\"%s\" ", name, value); }
  void attribute(const char *name, unsigned value) { append("%s=\"%u\" ", name, value); }
  // `record` is a ShownRecord's bytes.
  void attributes(const Rows &attributes, const uint8_t *record);
  void close() { append("/>"); }

  // The length of the text, or the capacity when the text was cut.
  uint32_t size() const { return length_ < capacity_ ? length_ : capacity_; }

 private:
  // Goes on counting where the text is cut.
  [[gnu::format(printf, 2, 3)]] void append(const char *format, ...);

  char *out_;
  uint32_t capacity_;
  uint32_t length_ = 0;
};

}  // namespace mcserver::nvme
