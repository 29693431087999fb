#include "shared/record_text.h"

namespace mcserver {

void print_fields(FILE *stream, std::span<const Field> fields, const uint8_t *record, const char *const *names) {
  for (const Field &field : fields) print_field(stream, field, record, names);
}

void print_field(FILE *stream, const Field &field, const uint8_t *record, const char *const *names) {
  visit_value(field, record, names, [&](auto value) { fprintf(stream, field.label, value); });
}

}  // namespace mcserver
