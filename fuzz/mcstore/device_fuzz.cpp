// Fuzzes devices: whatever a record holds, nothing of it reaches a terminal as it is, and its JSON makes the same
// record again.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/host/require.h"
#include "mcstore/health/judge.h"
#include "mcstore/inventory/inventory.h"
#include "mcstore/json/store_content.h"
#include "mcstore/kinds/printable.h"
#include "mcstore/kinds/utf8.h"
#include "mcstore/views/csv.h"
#include "mcstore/views/json.h"
#include "mcstore/views/rows.h"
#include "mcstore/views/xml.h"

using namespace mcstore;
using fuzz::require;

namespace {

void require_printable(const std::string &text) {
  require(std::ranges::all_of(text, [](char c) { return c == '\n' || (c >= 0x20 && c < 0x7F); }));
}

// CSV has UTF-8 in it.
void require_harmless(std::string_view text) {
  while (!text.empty()) {
    const Utf8Character character = first_character(text);
    require(character.code.has_value());
    const char32_t code = *character.code;
    require(code >= 0x20 && (code < 0x7F || code >= 0xA0) && !is_deceptive(code));
    text.remove_prefix(character.length);
  }
}

std::string document_of(const KindInventory &inventory, const Judge &judge) {
  std::string text;
  JsonDocument document(text);
  document.begin({.version = "1", .time = "", .root = "/"});
  document.begin_kind(inventory);
  for (size_t i = 0; i < inventory.size(); ++i) document.add(inventory.device(i), judge.judge(inventory.device(i)));
  document.end_kind();
  document.end();
  return text;
}

}  // namespace

// The first byte chooses the kind. The rest fills a record, over and over: a short input is to reach the last field,
// too.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 2) return 0;
  KindInventory inventory(kinds()[data[0] % kinds().size()]);
  const Kind &kind = *inventory.kind;
  if (kind.store_path.empty()) return 0;
  inventory.records.resize(kind.record_size);
  for (size_t i = 0; i < inventory.records.size(); ++i) inventory.records[i] = data[1 + i % (size - 1)];
  if (kind.stored_state) inventory.state = data[1];

  const Judge judge({});
  for (size_t i = 0; i < inventory.size(); ++i) {
    const Device device = inventory.device(i);
    const Verdict verdict = judge.judge(device);
    require_printable(device_rows(device, verdict, {}));
    const std::string line = csv_line(device, verdict.health, every_column(kind));
    require(line.ends_with("\r\n"));
    require_harmless(line.substr(0, line.size() - 2));
    require_printable(xml_device(device, verdict));
  }

  const std::string document = document_of(inventory, judge);
  require_printable(document);
  const auto stores = parse_inventory(document).stores;
  require(!stores.empty());
  const std::vector<uint8_t> &bytes = stores.back().bytes;  // behind the file to lock, where that is another
  const size_t header = bytes.size() - inventory.records.size();
  require(header == total_width(kind.store_header));
  require(std::equal(inventory.records.begin(), inventory.records.end(),
                     bytes.begin() + static_cast<std::ptrdiff_t>(header), bytes.end()));
  return 0;
}
