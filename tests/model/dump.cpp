#include "model/dump.h"

#include <cstring>

#include "model/world.h"

namespace model {
namespace {

std::string number(const char *label, uint64_t value) {
  if (strstr(label, "ll")) {
    const auto as_long = static_cast<long long>(value);
    return printed(label, as_long, as_long);
  }
  const auto as_int = static_cast<int>(value);
  return strstr(label, "%ld") ? printed(label, long{as_int}) : printed(label, as_int, as_int);
}

std::string dumped(const Bytes &record, const Line &line) {
  const auto value = [&](size_t width) { return little_endian(record, line.offset, width); };
  switch (line.as) {
    case As::kU8:
      return number(line.label, value(1));
    case As::kS8:
      return number(line.label, static_cast<uint64_t>(static_cast<int8_t>(value(1))));
    case As::kU16:
      return number(line.label, value(2));
    case As::kU32:
      return number(line.label, value(4));
    case As::kU64:
      return number(line.label, value(8));
    case As::kBool:
      return printed(line.label, value(1) ? "true" : "false");
    case As::kText:
      return printed(line.label, text(record.slice(line.offset, record.size() - line.offset)).c_str());
    case As::kDigits: {
      std::string digits;
      for (size_t i = 0; i < 8; ++i) digits += printed("%02x", record[line.offset + i]);
      return printed(line.label, digits.c_str());
    }
  }
  return "";
}

}  // namespace

std::string dumped(const Bytes &record, const std::vector<Line> &lines) {
  std::string text;
  for (const Line &line : lines) text += dumped(record, line);
  return text;
}

}  // namespace model
