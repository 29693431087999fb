#include "mcstore/json/json_writer.h"

#include <algorithm>

#include "mcstore/json/json.h"

namespace mcstore {
namespace {

bool is_plain(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; });
}

}  // namespace

JsonWriter &JsonWriter::key(std::string_view name) {
  separate();
  ((out_ += '"') += name) += layout_ == Layout::kIndented ? "\": " : "\":";
  is_behind_key_ = true;
  return *this;
}

bool JsonWriter::text(std::string_view value) {
  if (is_plain(value)) {  // nearly all texts are: what follows takes twenty times as long
    separate();
    ((out_ += '"') += value) += '"';
    return true;
  }
  const Json json = std::string(value);
  try {
    plain(json.dump(-1, ' ', true));
    return true;
  } catch (const Json::type_error &) {
    plain(json.dump(-1, ' ', true, Json::error_handler_t::replace));
    return false;
  }
}

void JsonWriter::begin(char bracket) {
  separate();
  out_ += bracket;
  ++depth_;
  is_first_ = true;
}

void JsonWriter::end(char bracket) {
  --depth_;
  if (!is_first_) new_line();
  out_ += bracket;
  is_first_ = false;
}

void JsonWriter::plain(std::string_view value) {
  separate();
  out_ += value;
}

// Before a value or a key: a comma, unless it is the first, and a line of its own.
void JsonWriter::separate() {
  const bool is_value_of_key = is_behind_key_;
  is_behind_key_ = false;
  if (is_value_of_key) return;
  if (!is_first_) out_ += ',';
  is_first_ = false;
  if (depth_ > 0) new_line();
}

void JsonWriter::new_line() {
  if (layout_ == Layout::kOneLine) return;
  out_ += '\n';
  out_.append(2 * depth_, ' ');
}

}  // namespace mcstore
