#include "mcserver_nvme/xml_text.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "mcserver_storage.h"
#include "shared/record_text.h"

namespace mcserver::nvme {

void XmlText::attribute(const Field &field, const uint8_t *record) {
  const char *const colon = strchr(field.label, ':');
  const char *const conversion = colon + 2;
  char format[kLongestAttributeFormat];
  snprintf(format, sizeof format, "%.*s=\"%.*s\" ", static_cast<int>(colon - field.label), field.label,
           static_cast<int>(strcspn(conversion, "\n")), conversion);
  visit_value(field, record, nvme_status_names, [&](auto shown) { append(format, shown); });
}

void XmlText::attributes(std::span<const Field> fields, const uint8_t *record) {
  for (const Field &field : fields) attribute(field, record);
}

void XmlText::append(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = vsnprintf(out_ + size(), capacity_ - size(), format, arguments);
  va_end(arguments);
  length_ += static_cast<uint32_t>(length);
}

}  // namespace mcserver::nvme
