// A staging image as XML: a summary element, then one for each record.
#pragma once

#include <cstdint>

#include "mcserver_storage.h"
#include "nvme/xml_text.h"
#include "shared/enum_name.h"
#include "shared/trace.h"

namespace mcserver::nvme {

// What differs between the kinds, beside the records.
struct Rendering {
  const char *function;
  int no_buffer_line;
  int too_small_line;
  const char *summary_element;
};

// *size is the room on entry and the text's length on return; 0 when there was too little room.
template <typename Header, typename Record>
void render(const Rendering &how, const uint8_t *image, char *out, uint32_t *size,
            void (*write_record)(XmlText &xml, const Record *record)) {
  if (!out || !size) {
    TRACE(how.function, how.no_buffer_line, "No buffer passed in to generate xml\n");
    return;
  }
  if (!image) {
    *size = 0;  // the caller's error
    return;
  }
  const auto *header = reinterpret_cast<const Header *>(image);
  if (*size < xml_capacity(header->count)) {
    *size = 0;
    TRACE(how.function, how.too_small_line, "Buffer passed in to generate xml is smaller than required\n");
    return;
  }

  XmlText xml(out, *size);
  xml.open(how.summary_element);
  xml.attribute("count", header->count);
  xml.attribute("state", name_or_empty(header->state, nvme_state_names));
  xml.close();
  const auto *records = reinterpret_cast<const Record *>(header + 1);
  for (uint32_t i = 0; i < header->count; ++i) write_record(xml, records + i);
  *size = xml.size();
}

}  // namespace mcserver::nvme
