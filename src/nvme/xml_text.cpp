#include "nvme/xml_text.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "mcserver_storage.h"

namespace mcserver::nvme {

void XmlText::attribute(const Line &line, const uint8_t *record) {
  const char *const colon = strchr(line.label, ':');
  const char *const conversion = colon + 2;
  char format[kLongestAttributeFormat];
  snprintf(format, sizeof format, "%.*s=\"%.*s\" ", static_cast<int>(colon - line.label), line.label,
           static_cast<int>(strcspn(conversion, "\n")), conversion);
  visit_value(line, record, nvme_status_names, [&](auto shown) { append(format, shown); });
}

void XmlText::attributes(std::span<const Line> lines, const uint8_t *record) {
  for (const Line &line : lines) attribute(line, record);
}

void XmlText::append(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = vsnprintf(out_ + size(), capacity_ - size(), format, arguments);
  va_end(arguments);
  length_ += static_cast<uint32_t>(length);
}

}  // namespace mcserver::nvme
