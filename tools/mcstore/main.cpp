// mcstore: a host for the plug-in on the command line.

#include <clocale>
#include <exception>
#include <sstream>
#include <string>

#include "mcstore/commands/command.h"
#include "mcstore/commands/output.h"
#include "mcstore/commands/usage.h"

namespace mcstore {
namespace {

// Whatever goes wrong in a check is UNKNOWN to the system that asks, which reads standard output.
int fail(const std::string &problem, int exit_code, const std::string &command) {
  return command == "check" ? complain_as_check(problem) : complain(problem, exit_code);
}

// For help, or the version.
int answer(const CLI::App &app, const CLI::Success &request) {
  std::ostringstream text;
  const int exit_code = app.exit(request, text, text);
  print(text.str());
  return exit_code;
}

int parse_and_act(CLI::App &app, int argc, char **argv) {
  app.require_subcommand(1);
  app.set_version_flag("--version", "mcstore " MCSTORE_VERSION);
  app.footer(
      "Exit codes: 0 success; 1 something went wrong; 2 usage; 3 there is nothing there. Those of check are 0 OK,\n"
      "1 WARNING, 2 CRITICAL, 3 UNKNOWN.");

  Action action;
  for (const auto add : {add_summary, add_check, add_get, add_diff, add_watch, add_capture, add_collect, add_decode})
    add(app, action);
  if (const std::string problem = unknown_command(app, argc, argv); !problem.empty()) return complain(problem, kUsage);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success &request) {
    return answer(app, request);
  } catch (const CLI::ParseError &error) {
    return fail(usage_problem(app, error), kUsage, command_in(app, argc, argv));
  }
  return action();
}

int run(int argc, char **argv) {
  CLI::App app("Shows the storage inventory of a server, as the plug-in libmcserver_storage.so reports it.", "mcstore");
  try {
    return parse_and_act(app, argc, argv);
  } catch (const std::exception &error) {
    return fail(reason(error), kFailure, command_in(app, argc, argv));
  }
}

}  // namespace
}  // namespace mcstore

int main(int argc, char **argv) {
  setlocale(LC_CTYPE, "");  // decides which characters can be shown
  try {
    return mcstore::run(argc, argv);
  } catch (const std::exception &) {  // there is not even memory for a message
    return mcstore::kFailure;
  }
}
