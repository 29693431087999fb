#include "shared/record_text.h"

#include <algorithm>

namespace mcserver {

void print_fields(FILE *stream, std::span<const Field> fields, const uint8_t *record, const char *const *names) {
  for (const Field &field : fields) print_field(stream, field, record, names);
}

void print_field(FILE *stream, const Field &field, const uint8_t *record, const char *const *names) {
  visit_value(field, record, names, [&](auto value) { fprintf(stream, field.label, value, value); });
}

void print_entries(FILE *stream, const Field &array, const uint8_t *record, size_t count) {
  const EntryTable &table = *array.entries;
  for (size_t number = 0; number < std::min(count, array.width / table.size); ++number)
    for (const Field &field : table.fields)
      visit_value(field, record + array.offset + number * table.size, nullptr,
                  [&](auto value) { fprintf(stream, field.label, static_cast<int>(number), value); });
}

}  // namespace mcserver
