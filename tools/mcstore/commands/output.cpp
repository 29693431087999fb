#include "mcstore/commands/output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <new>
#include <system_error>

#include "mcstore/kinds/printable.h"

namespace mcstore {

void print(std::string_view text) {
  const bool is_written = fwrite(text.data(), 1, text.size(), stdout) == text.size() && fflush(stdout) == 0;
  if (!is_written) throw std::system_error(errno, std::generic_category(), "cannot write to standard output");
}

void Printer::print(std::string_view text) {
  constexpr size_t kMostPending = 65536;
  pending_ += text;
  if (pending_.size() >= kMostPending) flush();
}

void Printer::flush() {
  mcstore::print(pending_);
  pending_.clear();
}

std::string reason(const std::exception &error) {
  return dynamic_cast<const std::bad_alloc *>(&error) ? "out of memory" : error.what();
}

std::optional<size_t> terminal_width() {
  constexpr size_t kUsual = 80;
  if (isatty(STDOUT_FILENO) == 0) return {};
  struct winsize size = {};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

int complain(const std::string &message, int exit_code) {
  fprintf(stderr, "mcstore: %s\n", printable(message).c_str());
  return exit_code;
}

}  // namespace mcstore
