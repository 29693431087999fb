// mcstore: a host for the plug-in on the command line.

#include <clocale>
#include <cstdio>
#include <exception>

#include "mcstore/commands/command.h"
#include "mcstore/commands/output.h"

namespace mcstore {
namespace {

int run(int argc, char **argv) {
  setlocale(LC_CTYPE, "");  // decides which characters can be shown
  CLI::App app("Shows the storage inventory of a server, as the plug-in libmcserver_storage.so reports it.", "mcstore");
  app.require_subcommand(1);
  app.set_version_flag("--version", "mcstore " MCSTORE_VERSION);
  app.footer("Exit codes: 0 success; 1 something went wrong; 2 usage; 3 there is nothing there.");

  Action action;
  for (const auto add : {add_get, add_collect, add_decode}) add(app, action);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return app.exit(error) == 0 ? kSuccess : kUsage;
  }
  return action();
}

}  // namespace
}  // namespace mcstore

int main(int argc, char **argv) {
  try {
    return mcstore::run(argc, argv);
  } catch (const std::exception &error) {
    return mcstore::complain(error.what(), mcstore::kFailure);
  }
}
