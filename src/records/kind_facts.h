// What is true of a kind of device beside the layout of its record. Each kind's facts stand beside its table; the
// plug-in, its decoders, the tool, the documents and the fuzz targets take them from there.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "mcserver_storage.h"
#include "shared/field.h"
#include "shared/identity.h"

namespace mcserver::records {

// What is locked while a file of the family is read or written. It is a store file of the family, too.
inline constexpr const char *kRaidLockPath = "/var/storctlr_info";
inline constexpr const char *kNvmeLockPath = "/var/nvmectlr_info";

// What tells a record of a gone device: a field and its value.
struct GoneMark {
  std::string_view field;
  uint8_t value;
};

struct KindFacts {
  const char *name;  // in JSON and on the command line
  const char *lock_path;
  const char *store_path;
  std::span<const IdentityMember> identity;  // what tells one device from another
  GoneMark gone = {};                        // without a field: a gone device is not reported
  uint32_t greatest_count;                   // of the devices that a reply can count
};

// Not constant: facts that come to this do not compile.
void identity_member_is_no_field_of_the_record();
void gone_mark_is_no_field_of_the_record();
void gone_mark_is_neither_a_plain_number_nor_a_word_of_a_status();

// Is the value shown as it stands, or as its word? mcstore knows a gone device by what is shown: a flag, a unit or
// another base would hide it.
consteval bool shows_gone_mark(const Field &field, uint8_t value) {
  if (field.type == FieldType::kStatus)
    return std::ranges::find(field.meaning.words, value, &Word::value) != field.meaning.words.end();
  return field.type == FieldType::kUnsigned && field.meaning.unit == Unit::kNone &&
         field.meaning.base == Base::kDecimal &&
         std::ranges::find(field.meaning.none, value) == field.meaning.none.end();
}

// Proves that the table has what the facts name.
template <const auto &table, const KindFacts &facts>
consteval bool fits_table() {
  for (const IdentityMember &member : facts.identity) {
    const size_t row = find_row(table, member.name);
    if (row == table.size() || table[row].offset != member.in_record) identity_member_is_no_field_of_the_record();
  }
  if (facts.gone.field.empty()) return true;
  const size_t gone = find_row(table, facts.gone.field);
  if (gone == table.size()) gone_mark_is_no_field_of_the_record();
  if (!shows_gone_mark(table[gone], facts.gone.value)) gone_mark_is_neither_a_plain_number_nor_a_word_of_a_status();
  return true;
}

}  // namespace mcserver::records
