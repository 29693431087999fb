#include "mcstore/source/trace.h"

#include <string_view>
#include <system_error>

#include "mcstore/kinds/printable.h"

namespace mcstore {
namespace {

// The lines end as they came; everything between is made printable.
ssize_t write_printable(void *, const char *bytes, size_t size) {
  std::string_view rest(bytes, size);
  while (!rest.empty()) {
    const size_t end = rest.find('\n');
    const std::string line = printable(rest.substr(0, end));
    fprintf(stderr, end == rest.npos ? "%s" : "%s\n", line.c_str());
    rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
  }
  return static_cast<ssize_t>(size);
}

}  // namespace

Trace::Trace() : stream_(fopencookie(nullptr, "w", {nullptr, write_printable, nullptr, nullptr})) {
  if (!stream_) throw std::system_error(errno, std::generic_category(), "cannot open a stream for traces");
}

Trace::~Trace() { fclose(stream_); }

}  // namespace mcstore
