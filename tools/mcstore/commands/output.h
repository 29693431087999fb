// What commands print.
#pragma once

#include <string>

namespace mcstore {

// To standard output, at once. Throws std::system_error.
void print(const std::string &text);

// A line on standard error, printable whatever it quotes. Returns the exit code, so that a command can end with it.
int complain(const std::string &message, int exit_code);

}  // namespace mcstore
