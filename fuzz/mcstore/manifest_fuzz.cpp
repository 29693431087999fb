// Fuzzes manifests of captures: whatever the text is, it is understood or refused with a message.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "mcstore/json/manifest.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  try {
    mcstore::parse_manifest({data, data + size});
  } catch (const mcstore::InvalidManifest &error) {
    if (std::string(error.what()).empty()) abort();
  }
  return 0;
}
