// The commands of the tool. Each is a file of this room, and adds itself to the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace mcstore {

inline constexpr int kSuccess = 0;
inline constexpr int kFailure = 1;
inline constexpr int kUsage = 2;
inline constexpr int kNothingThere = 3;

// What the chosen command does; returns the exit code.
using Action = std::function<int()>;

void add_summary(CLI::App &app, Action &action);
void add_get(CLI::App &app, Action &action);
void add_check(CLI::App &app, Action &action);
void add_diff(CLI::App &app, Action &action);
void add_watch(CLI::App &app, Action &action);
void add_capture(CLI::App &app, Action &action);
void add_collect(CLI::App &app, Action &action);
void add_decode(CLI::App &app, Action &action);

// Tells on standard output, as monitoring systems expect it, that the check could not be made.
int complain_as_check(const std::string &problem);

}  // namespace mcstore
