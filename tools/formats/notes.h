// What the tables cannot tell about a format: short texts that stand beside them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mcstore/kinds/kind.h"

namespace formats {

enum class Place { kStoreFile, kReplyHeader, kReply, kRecord, kGone };

// The notes about a kind's file, reply or record as a whole, or about one of its fields.
std::vector<std::string> notes_about(const mcstore::Kind &kind, Place place, std::string_view field = {});

// Throws std::logic_error when a note is about a kind or a field that does not exist (any more).
void refuse_stray_notes();

}  // namespace formats
