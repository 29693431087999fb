// What commands print.
#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace mcstore {

// To standard output, at once. Throws std::system_error.
void print(std::string_view text);

// The same for many small pieces, which are printed together.
class Printer {
 public:
  void print(std::string_view text);
  void flush();

 private:
  std::string pending_;
};

// What went wrong, for people: the system's own words would not tell them.
std::string reason(const std::exception &error);

// The width of the terminal that standard output is; nothing if it is none.
std::optional<size_t> terminal_width();

// A line on standard error, printable whatever it quotes. Returns the exit code, so that a command can end with it.
int complain(const std::string &message, int exit_code);

}  // namespace mcstore
