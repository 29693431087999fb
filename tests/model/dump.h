// The lines of a record's text dump.
#pragma once

#include <string>
#include <vector>

#include "model/choices.h"

namespace model {

enum class As { kU8, kS8, kU16, kU32, kU64, kBool, kText, kDigits };

// The label has one conversion, which the number or text takes: %d, %x and %ld as of an int, %lld and %llx of a
// long long. Some show their number twice.
struct Line {
  size_t offset;
  As as;
  const char *label;
};

// A text goes on to its NUL, at most to the end of the record.
std::string dumped(const Bytes &record, const std::vector<Line> &lines);

}  // namespace model
