// Writes store files the way the collector does.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "mcstore/json/store_content.h"

namespace mcstore {

// Writes every store below `root`, making directories as needed, while it holds an exclusive flock on its lock
// file. Content is replaced in place, so that a reader that waits for the lock reads the new one. `modified` becomes
// the files' modification time. Throws std::system_error.
void write_stores(const std::vector<StoreContent> &stores, const std::string &root, std::optional<time_t> modified);

// Seconds since 1970, or ISO 8601 (2026-03-01, 2026-03-01T12:00:00, with Z or +01:00 at the end; UTC without).
// Nothing if the text is neither.
std::optional<time_t> parse_time(const std::string &text);

}  // namespace mcstore
