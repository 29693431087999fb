// Which server this is: the first word of the product file tells.

#include <strings.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "mcserver_storage.h"
#include "shared/exported.h"
#include "shared/stream.h"
#include "shared/trace.h"

namespace mcserver {
namespace {

constexpr char kProductFile[] = "/etc/product";
constexpr size_t kWordSize = 64;

// A yes-or-no question about the product word, asked of the file once in the life of the process.
struct PlatformTest {
  const char *function;
  int line;
  std::string_view name;
  bool is_checked;
  bool answer;

  bool ask() {
    if (is_checked) return answer;
    is_checked = true;  // before reading: a file that cannot be read is not tried again

    char word[kWordSize];
    const int converted = read_product_file(word);
    if (converted != 1)
      TRACE(function, line, "fscanf on product file gave unexpected value %d: %d (%s)", converted, errno,
            strerror(errno));
    else
      answer = strncasecmp(word, name.data(), name.size()) == 0;
    return answer;
  }
};

constinit PlatformTest kestrano = {"running_on_kestrano", 203, "kestrano", false, false};
constinit PlatformTest morvik = {"running_on_morvik", 224, "morvik", false, false};

}  // namespace

EXPORTED int read_product_file(char *word) {
  const Stream product(fopen(kProductFile, "r"));
  if (!product) {
    TRACE("read_product_file", 180, "fopen(%s) failed: errno %d (%s)", kProductFile, errno, strerror(errno));
    return 0;
  }
  if (!word) return 0;  // the host's error
  return fscanf(product.get(), "%63s", word);
}

EXPORTED int running_on_kestrano(void) { return kestrano.ask(); }

EXPORTED int running_on_morvik(void) { return morvik.ask(); }

}  // namespace mcserver
