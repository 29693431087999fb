// What a user is told of a command line that cannot be understood.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace mcstore {

// One line that says which word is wrong, and what may have been meant.
std::string usage_problem(const CLI::App &app, const CLI::ParseError &error);

// The first word, if it should be a command and is none; empty otherwise.
std::string unknown_command(const CLI::App &app, int argc, char **argv);

// The command among the words, even where the line as a whole cannot be understood; empty for none.
std::string command_in(const CLI::App &app, int argc, char **argv);

}  // namespace mcstore
