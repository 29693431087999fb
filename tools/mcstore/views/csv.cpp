#include "mcstore/views/csv.h"

#include "mcstore/kinds/printable.h"
#include "mcstore/kinds/utf8.h"
#include "mcstore/views/machine_text.h"

namespace mcstore {
namespace {

constexpr char kLineEnd[] = "\r\n";

std::string quoted(const std::string &value) {
  if (value.find_first_of(",\"") == value.npos) return value;
  std::string result = "\"";
  for (const char c : value) result.append(c == '"' ? 2 : 1, c);
  return result + '"';
}

bool is_control(char32_t character) { return character < 0x20 || (character >= 0x7F && character < 0xA0); }

std::string escaped_text(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const Utf8Character character = first_character(text);
    const std::string_view bytes = text.substr(0, character.length);
    if (!character.code || is_control(*character.code) || is_deceptive(*character.code))
      result += escaped(bytes);
    else
      result += bytes == "\\" ? "\\\\" : bytes;
    text.remove_prefix(bytes.size());
  }
  return result;
}

// A text, which might be anything.
std::string csv_text(std::string_view text) {
  const bool looks_like_formula = !text.empty() && std::string_view("=+-@").find(text[0]) != std::string_view::npos;
  return quoted((looks_like_formula ? "'" : "") + escaped_text(text));
}

std::string csv_value(const Column &column, const Device &device, Health health) {
  const Field *field = device.find(column.name);
  if (!field) return csv_text(text_of(column, device, health));
  const std::string value = machine_text(device, *field);
  return field->type == mcserver::FieldType::kText ? csv_text(value) : value;
}

}  // namespace

std::string csv_header(const std::vector<Column> &columns) {
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const Column &column : columns) names.push_back(quoted(column.name));
  return joined(names, ",") + kLineEnd;
}

std::string csv_line(const Device &device, Health health, const std::vector<Column> &columns) {
  std::vector<std::string> values;
  values.reserve(columns.size());
  for (const Column &column : columns) values.push_back(csv_value(column, device, health));
  return joined(values, ",") + kLineEnd;
}

}  // namespace mcstore
