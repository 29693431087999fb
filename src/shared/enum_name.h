// Words for the values of a byte: enum_name, which is exported, and what stands in where it has no answer.
#pragma once

namespace mcserver {

// The value's word in a null-terminated table, or an empty text: the value that equals the number of words has none,
// and printing a null would be undefined.
const char *name_or_empty(int value, const char *const *table);

}  // namespace mcserver
