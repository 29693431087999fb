// A capture: a directory with copies of all that the plug-in reads, and a manifest that tells what they must be.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/bbu_record.h"

namespace mcstore {

inline constexpr std::string_view kManifestPath = "/manifest.json";

// What a capture holds beside the store files: the flash module's data and the name of the server, which no lock
// guards.
inline constexpr std::string_view kUnlockedFiles[] = {mcserver::records::kFlashModulePath, "/etc/product"};

// When the capture in this directory was taken; nothing if there is none in it. All of it is checked first: the files
// are those that the manifest lists, with the same bytes, and nothing in it leads out of it. Throws Unreadable or
// Damaged, which name the file.
std::optional<time_t> captured_at(const std::string &directory);

}  // namespace mcstore
