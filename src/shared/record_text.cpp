#include "shared/record_text.h"

namespace mcserver {

void print_lines(FILE *stream, const Rows &lines, const uint8_t *record, const char *const *names) {
  for (const CompiledRow &line : lines)
    visit_value(line, record, names, [&](auto value) { fprintf(stream, lines.text(line), value, value); });
}

void print_entries(FILE *stream, const Rows &lines, const uint8_t *entries, size_t size, size_t count) {
  for (size_t number = 0; number < count; ++number)
    for (const CompiledRow &line : lines)
      visit_value(line, entries + number * size, nullptr,
                  [&](auto value) { fprintf(stream, lines.text(line), static_cast<int>(number), value); });
}

}  // namespace mcserver
