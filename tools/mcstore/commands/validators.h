// What an option's value must be. What is refused is told in one line of ours: the command-line library puts the
// option's name before it.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace mcstore {

CLI::Validator existing_file();
CLI::Validator existing_directory();
CLI::Validator one_of(std::vector<std::string> names);
CLI::Validator number_between(double least, double greatest);
CLI::Validator whole_number_between(uint64_t least, uint64_t greatest);

}  // namespace mcstore
