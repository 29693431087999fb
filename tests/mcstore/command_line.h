// Runs mcstore as its users do, on a directory of the test.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "host/store_directory.h"

namespace tests {

struct Outcome {
  int exit_code;
  std::string out;  // standard output
  std::string err;  // standard error
};

// Runs a command in a shell.
Outcome run(const std::string &command);

// What runs mcstore, in such a command.
std::string mcstore_command();

// Runs "mcstore ARGUMENTS" in a shell.
inline Outcome mcstore(const std::string &arguments) { return run(mcstore_command() + ' ' + arguments); }

class McstoreTest : public testing::Test {
 protected:
  // The same with "--root DIRECTORY" behind the arguments.
  Outcome mcstore_here(const std::string &arguments) { return mcstore(arguments + " --root " + files.real("")); }

  StoreDirectory files;
};

}  // namespace tests
