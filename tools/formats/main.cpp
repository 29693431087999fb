// Prints docs/formats.md: the store files and the replies of every kind, as the record tables have them.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "formats/field_tables.h"
#include "formats/notes.h"
#include "formats/xml_elements.h"
#include "mcserver_storage.h"
#include "mcstore/kinds/kind.h"

namespace formats {
namespace {

using mcserver::Field;
using mcstore::Kind;

constexpr const char *kIntroduction =
    R"(<!-- Generated from the record tables by script/docs. Change those, or tools/formats/, not this file. -->

# Formats

The store files that the plug-in reads, and the replies that it writes: every byte, as src/records/ and the public
header have it. What the calls do with them is told in the [integration guide](integration.md).

In every store file:

- Numbers are little-endian, and nothing is aligned.
- Texts are padded with NULs; one that fills its field has no NUL.
- The records follow the header without a gap, up to the end of the file. The file's size decides how many there are; a
  last one that is not whole is not reported.

In the tables:

| Type | Meaning |
|---|---|
| unsigned, signed | a number |
| text | characters |
| flag | a byte that is true when it is not 0; a dump prints `true` or `false` |
| inverted flag | the same, but a dump prints the opposite |
| status | a byte that dumps and XML show as a word, [listed below](#nvme-names) |
| attachment | a byte that a dump prints as `Direct Attached` when it is 1, else as `Expander Attached` |
| bytes | never converted |
| array | entries, which have a table of their own |

A time stamp counts seconds since 1970. "Values" tells what single values mean, as far as anybody has defined it: a value
that is not listed is the collector's own; and where the field means something only in some records. "In a reply" is the
byte order of the number there; in a simulated reply every number is little-endian. A field without a line is not
printed.
)";

std::string code(std::string_view text) { return fmt::format("`{}`", text); }

std::string code_list(const std::vector<std::string_view> &names) {
  return fmt::format("`{}`", fmt::join(names, "`, `"));
}

std::string bytes(size_t number) { return fmt::format("{} byte{}", number, number == 1 ? "" : "s"); }

size_t size_of(std::span<const Field> header) {
  return header.empty() ? 0 : header.back().offset + header.back().width;
}

std::string general_notes(const Kind &kind, Place place) {
  std::string text;
  for (const std::string &note : notes_about(kind, place)) text += list_item(note);
  return text;
}

std::string fact(std::string_view name, const std::string &value) { return fmt::format("| {} | {} |\n", name, value); }

std::string gone_text(const Kind &kind) {
  if (kind.gone_field.empty()) return "not reported";
  const std::vector<std::string> written = notes_about(kind, Place::kGone);
  if (written.empty()) throw std::logic_error(fmt::format("no note tells what is written of gone {}", kind.name));
  return fmt::format("{} {}; beside it: {}", code(kind.gone_field), kind.gone_text, fmt::join(written, "; "));
}

std::string facts(const Kind &kind) {
  std::string text = "| | |\n|---|---|\n";
  text += fact("Entry points", fmt::format("{}, {}", code(kind.full_entry_point), code(kind.delta_entry_point)));
  if (!kind.store_path.empty()) {
    text += fact("Store file", code(kind.store_path));
    text += fact("Lock file", kind.store_path == kind.lock_path ? "the store file itself" : code(kind.lock_path));
  }
  text += fact("Record", bytes(kind.record_size));
  if (kind.store_path.empty()) return text;
  text += fact("Decoder", code(kind.decoder));
  text += fact("Identity", code_list(kind.identity));
  text += fact("A device that is gone", gone_text(kind));
  return text;
}

std::string store_file(const Kind &kind) {
  if (kind.store_path.empty()) return "There is no store file: only a simulation has a reply.\n";
  if (kind.store_header.empty()) return "Nothing but records.\n";
  return fmt::format("A header of {}, then the records.\n\n{}", bytes(size_of(kind.store_header)),
                     header_table(kind, kind.store_header, Place::kStoreFile));
}

std::string attribute_rows(const std::vector<XmlAttribute> &attributes, std::string_view condition) {
  std::string text;
  for (const XmlAttribute &one : attributes)
    text += fmt::format("| {} | {} |{}\n", code(one.text), code(one.field),
                        condition.empty() ? " |" : fmt::format(" {} |", condition));
  return text;
}

std::string xml_reply(const Kind &kind) {
  const XmlElements xml = xml_elements(kind);
  std::string text = fmt::format(
      "One line of XML, without a NUL: `<{} count=\"%u\" state=\"%s\" />`,\nwith the number of records modulo {} and a "
      "state name, then for each record an element `<{} />`\nwith these attributes, in this order and with a blank "
      "behind each:\n\n",
      xml.summary, modulus(xml.count_width), xml.device);
  text += "| Attribute | Field | Only |\n|---|---|---|\n";
  text += attribute_rows(xml.attributes, "");
  text += attribute_rows(xml.switch_attributes, "of a switch");
  return text;
}

std::string packed_reply(const Kind &kind) {
  return fmt::format("A header of {}, then the records.\n\n{}", bytes(kind.layout->header_size),
                     header_table(kind, kind.layout->header, Place::kReplyHeader));
}

std::string reply(const Kind &kind) {
  std::string text = kind.layout ? packed_reply(kind) : xml_reply(kind);
  const std::string notes = general_notes(kind, Place::kReply);
  return notes.empty() ? text : text + '\n' + notes;
}

// Those of a variant's fields that the record does not have otherwise.
std::vector<Field> own_fields(std::span<const Field> fields, std::span<const Field> others) {
  std::vector<Field> own;
  std::ranges::copy_if(fields, std::back_inserter(own), [&](const Field &field) {
    return std::ranges::none_of(others, [&](const Field &other) {
      return other.offset == field.offset && other.name == std::string_view(field.name);
    });
  });
  return own;
}

std::string variant(const Kind &kind) {
  const std::vector<Field> replaced = own_fields(kind.fields, kind.variant->fields);
  const std::vector<Field> own = own_fields(kind.variant->fields, kind.fields);
  return fmt::format("\nThe fields from {} up to {} are those of a record whose {} is 0. Otherwise\nthey are:\n\n{}",
                     code(replaced.front().name), code(replaced.back().name), code(kind.variant->flag.name),
                     record_table(kind, own));
}

std::string record(const Kind &kind) {
  std::string text = record_table(kind, kind.fields);
  std::string notes = general_notes(kind, Place::kRecord) + record_notes(kind, kind.fields);
  if (kind.variant) {
    text += variant(kind);
    notes += record_notes(kind, own_fields(kind.variant->fields, kind.fields));
  }
  return notes.empty() ? text : text + '\n' + notes;
}

std::string section(const Kind &kind) {
  return fmt::format("\n## {}\n\n{}\n### Store file\n\n{}\n### Reply\n\n{}\n### Record\n\n{}", kind.title, facts(kind),
                     store_file(kind), reply(kind), record(kind));
}

std::string names(std::string_view title, const char *const *table) {
  std::string text = fmt::format("\n| Value | {} |\n|---|---|\n", title);
  for (int value = 0; table[value]; ++value) text += fmt::format("| {} | {} |\n", value, code(table[value]));
  return text;
}

std::string document() {
  refuse_stray_notes();
  std::string text = kIntroduction;
  for (const Kind &kind : mcstore::kinds()) text += section(kind);
  text += "\n## NVMe names\n\nA value that has no name is shown as an empty text.\n";
  return text + names("State", nvme_state_names) + names("Status", nvme_status_names);
}

}  // namespace
}  // namespace formats

int main() {
  try {
    fputs(formats::document().c_str(), stdout);
    return fflush(stdout) == 0 ? 0 : 1;
  } catch (const std::exception &error) {
    fprintf(stderr, "record_formats: %s\n", error.what());
    return 1;
  }
}
