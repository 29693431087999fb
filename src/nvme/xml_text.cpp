#include "nvme/xml_text.h"

#include <cstdarg>
#include <cstdio>

#include "mcserver_storage.h"
#include "shared/record_text.h"

namespace mcserver::nvme {

namespace {

const char *format_of(XmlForm form) {
  switch (form) {
    case XmlForm::kText:
      return "%s=\"%s\" ";
    case XmlForm::kDecimal:
      return "%s=\"%d\" ";
    case XmlForm::kHexadecimal:
      return "%s=\"%x\" ";
    case XmlForm::kPrefixedHexadecimal:
      return "%s=\"0x%x\" ";
  }
  return "";
}

}  // namespace

void XmlText::attributes(const Rows &attributes, const uint8_t *record) {
  for (const CompiledRow &row : attributes)
    visit_value(row, record, nvme_status_names,
                [&](auto shown) { append(format_of(row.form), attributes.text(row), shown); });
}

void XmlText::append(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = vsnprintf(out_ + size(), capacity_ - size(), format, arguments);
  va_end(arguments);
  length_ += static_cast<uint32_t>(length);
}

}  // namespace mcserver::nvme
