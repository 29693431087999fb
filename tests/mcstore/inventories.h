// Inventories made up by tests, without any plug-in.
#pragma once

#include <clocale>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/bytes.h"
#include "mcstore/inventory/inventory.h"
#include "mcstore/kinds/kind.h"

namespace tests {

// A record of that kind, of zeros until its fields are set.
class RecordOf {
 public:
  explicit RecordOf(const std::string &kind)
      : kind_(mcstore::kind_named(kind)), bytes_(Bytes::repeated(kind_.record_size, 0)) {}

  RecordOf &number(std::string_view name, uint64_t value) {
    const mcstore::Field field = named(name);
    for (size_t i = 0; i < field.width; ++i) bytes_.put(field.offset + i, Bytes().u8(value >> (8 * i) & 0xFF));
    return *this;
  }
  RecordOf &text(std::string_view name, const std::string &value) {
    const mcstore::Field field = named(name);
    bytes_.put(field.offset, Bytes().text(value.substr(0, field.width), field.width));
    return *this;
  }
  RecordOf &every_text(const std::string &value) {
    for (const mcstore::Field &field : mcstore::fields_of(kind_, span()))
      if (field.type == mcserver::FieldType::kText) text(field.name, value);
    return *this;
  }

  const mcstore::Kind &kind() const { return kind_; }
  const Bytes &bytes() const { return bytes_; }
  mcstore::Record span() const { return {bytes_.data(), bytes_.size()}; }
  mcstore::Device device() const { return {kind_, 0, span(), span()}; }

 private:
  mcstore::Field named(std::string_view name) const {
    const auto fields = mcstore::fields_of(kind_, span());
    return fields[mcserver::find_row(fields, name)];
  }

  const mcstore::Kind &kind_;
  Bytes bytes_;
};

// A field and its value, to set a few of them at once.
struct FieldValue {
  std::string_view field;
  std::variant<int64_t, std::string_view> value;
};

inline RecordOf record_of(std::string_view kind, const std::vector<FieldValue> &values) {
  RecordOf record{std::string(kind)};
  for (const auto &[field, value] : values) {
    if (const auto *text = std::get_if<std::string_view>(&value))
      record.text(field, std::string(*text));
    else
      record.number(field, static_cast<uint64_t>(std::get<int64_t>(value)));
  }
  return record;
}

inline mcstore::KindInventory inventory_of(const std::string &kind, const std::vector<RecordOf> &records) {
  mcstore::KindInventory inventory(mcstore::kind_named(kind));
  for (const RecordOf &record : records)
    inventory.records.insert(inventory.records.end(), record.span().begin(), record.span().end());
  return inventory;
}

// What a store file of these records holds: the state in its header is the good one.
inline Bytes store_of(const mcstore::Kind &kind, const std::vector<RecordOf> &records) {
  Bytes file;
  for (const mcstore::Field &field : kind.store_header) {
    const bool is_count = field.meaning.words.empty();
    const uint64_t good_state = kind.layout ? 2 : 4;
    const uint64_t value = is_count ? records.size() : good_state;
    for (size_t i = 0; i < field.width; ++i) file.u8(value >> (8 * i) & 0xFF);
  }
  for (const RecordOf &record : records) file += record.bytes();
  return file;
}

// Texts of devices that would do harm where they are shown as they are.
inline constexpr char kHostile[] = "\x1b]0;x\a\r\n\"',<&>=\xe2\x80\xae\xff\xc3\xa9]]>";

// Another locale, as long as it lives.
class InLocale {
 public:
  explicit InLocale(const char *name) : before_(setlocale(LC_CTYPE, nullptr)) { setlocale(LC_CTYPE, name); }
  InLocale(const InLocale &) = delete;
  InLocale &operator=(const InLocale &) = delete;
  ~InLocale() { setlocale(LC_CTYPE, before_.c_str()); }

 private:
  std::string before_;
};

}  // namespace tests
