#include "mcstore/commands/change_format.h"

#include "mcstore/commands/validators.h"

namespace mcstore {

void add_change_format(CLI::App &command, ChangeFormat &format) {
  command
      .add_option_function<std::string>(
          "--format",
          [&format](const std::string &name) {
            format = name == "ndjson" ? ChangeFormat::kNdjson : ChangeFormat::kText;
          },
          "How to show changes: text, or ndjson for programs")
      ->type_name("FORMAT")
      ->check(one_of({"text", "ndjson"}));
}

}  // namespace mcstore
