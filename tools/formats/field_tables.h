// Tables of fields as Markdown.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "formats/notes.h"
#include "mcstore/kinds/kind.h"

namespace formats {

// The header of a store file or of a reply: a row for each field, with its notes.
std::string header_table(const mcstore::Kind &kind, std::span<const mcserver::Field> fields, Place place);

// An item of a list, in lines of at most 120 characters.
std::string list_item(std::string_view text);

// How far a count of so many bytes counts before it starts again at 0.
uint64_t modulus(size_t width);

// A record, or a part of it: a row for each field, then what its arrays consist of. A kind whose reply is packed
// has a column for the byte order in it, one that has a store file a column for its dump.
std::string record_table(const mcstore::Kind &kind, std::span<const mcserver::Field> fields);

// The notes about these fields and about the record, as a list.
std::string record_notes(const mcstore::Kind &kind, std::span<const mcserver::Field> fields);

}  // namespace formats
