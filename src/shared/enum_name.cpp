#include "shared/enum_name.h"

#include "mcserver_storage.h"
#include "shared/exported.h"

namespace mcserver {

const char *name_or_empty(int value, const char *const *table) {
  const char *name = enum_name(value, table);
  return name ? name : "";
}

// A value beyond the end of the table gives an empty text, but the value at its very end gives the null that ends it:
// callers rely on both.
EXPORTED const char *enum_name(int value, const char *const *table) {
  if (!table || value < 0) return "";  // the caller's error
  for (int i = 0; i < value; ++i)
    if (!table[i]) return "";
  return table[value];
}

}  // namespace mcserver
