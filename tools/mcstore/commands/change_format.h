// What the commands that tell of changes have in common.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "mcstore/views/changes.h"

namespace mcstore {

// --format: text or ndjson.
void add_change_format(CLI::App &command, ChangeFormat &format);

}  // namespace mcstore
