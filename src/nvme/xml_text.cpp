#include "nvme/xml_text.h"

#include <cstdarg>
#include <cstdio>

#include "mcserver_storage.h"
#include "shared/record_text.h"

namespace mcserver::nvme {

namespace {

// Of an attribute, in the order of XmlForm.
constexpr char kFormats[][12] = {"%s=\"%s\" ", "%s=\"%d\" ", "%s=\"%x\" ", "%s=\"0x%x\" "};

}  // namespace

void XmlText::attributes(const Rows &attributes, const uint8_t *record) {
  for (const CompiledRow &row : attributes)
    visit_value(row, record, nvme_status_names,
                [&](auto shown) { append(kFormats[static_cast<size_t>(row.form)], attributes.text(row), shown); });
}

void XmlText::append(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = vsnprintf(out_ + size(), capacity_ - size(), format, arguments);
  va_end(arguments);
  length_ += static_cast<uint32_t>(length);
}

}  // namespace mcserver::nvme
