// Options that several commands have.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "mcstore/inventory/source.h"
#include "mcstore/views/colour.h"

namespace mcstore {

// Instead of a kind's name: every kind, one after the other.
inline constexpr char kAllKinds[] = "all";

// --plugin, for commands that load it.
void add_plugin_option(CLI::App &command, std::string &plugin);

// --color, for commands whose output people read.
void add_colour_option(CLI::App &command, ColourChoice &choice);

// --from, and --timeout.
void add_from_option(CLI::App &command, std::string &from);
void add_timeout_option(CLI::App &command, Patience &patience);

// --timeout, and what concerns the plug-in: for each command that reads inventories.
void add_reading_options(CLI::App &command, SourceOptions &options);

// The same and --from: for a command that reads one.
void add_source_options(CLI::App &command, SourceOptions &options);

// The names of all kinds.
std::vector<std::string> kind_names();

// The kind to show, or all.
CLI::Option *add_kind(CLI::App &command, std::string &kind);

// What is said where there is nothing: where it was looked, why that is so, and what to do.
inline constexpr char kNoStoreFiles[] = "it has none of the store files";
std::string nothing_there(const SourceOptions &options, const std::string &why);

// Every kind, or the one of this name.
std::vector<const Kind *> chosen_kinds(const std::string &name);

}  // namespace mcstore
