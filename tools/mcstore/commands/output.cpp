#include "mcstore/commands/output.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "mcstore/kinds/printable.h"

namespace mcstore {

void print(const std::string &text) {
  const bool is_written = fwrite(text.data(), 1, text.size(), stdout) == text.size() && fflush(stdout) == 0;
  if (!is_written) throw std::system_error(errno, std::generic_category(), "cannot write to standard output");
}

int complain(const std::string &message, int exit_code) {
  fprintf(stderr, "mcstore: %s\n", printable(message).c_str());
  return exit_code;
}

}  // namespace mcstore
