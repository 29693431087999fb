// A capture: a directory with copies of all that the plug-in reads, and a manifest that tells what they must be.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mcstore/json/manifest.h"
#include "records/bbu_record.h"

namespace mcstore {

inline constexpr std::string_view kManifestPath = "/manifest.json";

// What a capture holds beside the store files: the flash module's data and the name of the server, which no lock
// guards.
inline constexpr std::string_view kUnlockedFiles[] = {mcserver::records::kFlashModulePath, "/etc/product"};

// What the capture in this directory says of itself; nothing if there is none in it. All of it is checked first: the
// files are those that the manifest lists, with the same bytes, and nothing in it leads out of it. Throws Unreadable or
// Damaged, which name the file.
std::optional<Manifest> captured_at(const std::string &directory);

}  // namespace mcstore
