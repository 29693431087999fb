#include "mcstore/source/digest.h"

#include <sha2.h>

namespace mcstore {

std::string sha256(std::span<const uint8_t> bytes) {
  char digits[SHA256_DIGEST_STRING_LENGTH];
  return SHA256Data(bytes.data(), bytes.size(), digits);
}

}  // namespace mcstore
