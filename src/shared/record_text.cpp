#include "shared/record_text.h"

#include <algorithm>

namespace mcserver {

void print_lines(FILE *stream, std::span<const Line> lines, const uint8_t *record, const char *const *names) {
  for (const Line &line : lines) print_line(stream, line, record, names);
}

void print_line(FILE *stream, const Line &line, const uint8_t *record, const char *const *names) {
  visit_value(line, record, names, [&](auto value) { fprintf(stream, line.label, value, value); });
}

void print_entries(FILE *stream, const Field &array, const uint8_t *record, size_t count) {
  const EntryTable &table = *array.entries;
  for (size_t number = 0; number < std::min(count, array.width / table.size); ++number)
    for (const Field &field : table.fields)
      visit_value(line_of(field), record + array.offset + number * table.size, nullptr,
                  [&](auto value) { fprintf(stream, field.label, static_cast<int>(number), value); });
}

}  // namespace mcserver
