#include "mcstore/views/changes.h"

#include <fmt/core.h>

#include "mcstore/json/inventory_format.h"
#include "mcstore/json/json_writer.h"
#include "mcstore/kinds/printable.h"
#include "mcstore/kinds/unit.h"

namespace mcstore {
namespace {

std::string visible(const std::string &text) { return text.empty() ? "(empty)" : text; }

std::string arrow(const FieldChange &field) {
  return fmt::format("{} -> {}", visible(field.before.text), visible(field.after.text));
}

// What the device is, and those of its texts that tell it from others and are not said yet: another drive in the same
// place has another serial number.
std::string what_it_is(const Device &device) {
  std::vector<std::string> parts = {visible(device.model())};
  for (const std::string_view name : device.kind().identity) {
    const Field *field = device.find(name);
    const std::string text = device.text(*field);
    const bool is_said = text == device.model() || device.name().find(text) != std::string::npos;
    if (field->type == mcserver::FieldType::kText && !is_said) parts.push_back(fmt::format("{} {}", name, text));
  }
  return joined(parts, ", ");
}

// "drives c0/e62/s2 changed", "drives c0/e62/s3 came: MODEL, serial_num S1", "drives changed"
std::string title(const Change &change) {
  if (!change.device) return fmt::format("{} changed", change.kind->name);
  const std::string text = fmt::format("{} {} {}", change.kind->name, change.device->name(), word_for(change.type));
  return change.type == ChangeType::kChanged ? text : fmt::format("{}: {}", text, what_it_is(*change.device));
}

void write_number(JsonWriter &json, const FieldChange &change, const ShownValue &value) {
  if (!value.number)
    json.null();
  else if (change.field && change.field->type == mcserver::FieldType::kSigned)
    json.number(static_cast<int64_t>(*value.number));
  else
    json.number(*value.number);
}

void write_field(JsonWriter &json, const FieldChange &change) {
  json.begin_object();
  json.key("name").text(key_of(change.name));
  json.key("before").text(change.before.text);
  json.key("after").text(change.after.text);
  if (change.before.number || change.after.number) {
    write_number(json.key("before_number"), change, change.before);
    write_number(json.key("after_number"), change, change.after);
  }
  json.end_object();
}

void write_identity(JsonWriter &json, const Device &device) {
  json.begin_object();
  for (const std::string_view name : device.kind().identity) json.key(key_of(name)).text(device.text(name));
  json.end_object();
}

void write_change(JsonWriter &json, const Change &change) {
  json.key("kind").text(change.kind->name);
  json.key("change").text(word_for(change.type));
  if (change.device) {
    json.key("device").text(change.device->name());
    json.key("model").text(change.device->model());
    write_identity(json.key("identity"), *change.device);
  }
  json.key("fields").begin_array();
  for (const FieldChange &field : change.fields) write_field(json, field);
  json.end_array();
}

// An object on a line of its own, with the members that `write` gives it.
template <typename Write>
std::string json_line(const Write &write) {
  std::string line;
  JsonWriter json(line, JsonWriter::Layout::kOneLine);
  json.begin_object();
  write(json);
  json.end_object();
  return line + '\n';
}

std::string time_of_day(const struct timespec &when) {
  struct tm fields = {};
  char text[16] = "";
  strftime(text, sizeof text, "%H:%M:%S", localtime_r(&when.tv_sec, &fields));
  return text;
}

// To the second: the places behind it would say when it was noticed, not when it happened.
void write_time(JsonWriter &json, const struct timespec &when) {
  json.key("time").text(iso_time({.tv_sec = when.tv_sec, .tv_nsec = 0}));
}

// "4 drives", "3 drives (damaged)", "drives unreadable"; nothing for a kind that is not there.
std::string found(const KindInventory &inventory) {
  if (inventory.status == KindStatus::kAbsent) return "";
  if (!inventory.has_data()) return fmt::format("{} {}", inventory.kind->name, word_for(inventory.status));
  const std::string count = fmt::format("{} {}", inventory.size(), inventory.kind->name);
  return inventory.status == KindStatus::kFine ? count : fmt::format("{} ({})", count, word_for(inventory.status));
}

void write_found(JsonWriter &json, const KindInventory &inventory) {
  json.begin_object();
  json.key("kind").text(inventory.kind->name);
  json.key("status").text(word_for(inventory.status));
  json.key("devices").number(inventory.size());
  json.end_object();
}

}  // namespace

std::string shown_change(const Change &change, ChangeFormat format) {
  if (format == ChangeFormat::kNdjson) return json_line([&](JsonWriter &json) { write_change(json, change); });
  std::string lines = printable(title(change)) + '\n';
  for (const FieldChange &field : change.fields)
    lines += fmt::format("  {}: {}\n", field.name, printable(arrow(field)));
  return lines;
}

std::string shown_event(const Change &change, const struct timespec &when, ChangeFormat format) {
  if (format == ChangeFormat::kNdjson)
    return json_line([&](JsonWriter &json) {
      write_time(json, when);
      write_change(json, change);
    });
  std::vector<std::string> parts;
  for (const FieldChange &field : change.fields) parts.push_back(fmt::format("{} {}", field.name, arrow(field)));
  const std::string details = parts.empty() ? "" : ": " + joined(parts, ", ");
  return fmt::format("{} {}\n", time_of_day(when), printable(title(change) + details));
}

std::string shown_beginning(const std::vector<const KindInventory *> &inventories, const struct timespec &when,
                            ChangeFormat format) {
  if (format == ChangeFormat::kNdjson)
    return json_line([&](JsonWriter &json) {
      write_time(json, when);
      json.key("change").text("watching");
      json.key("kinds").begin_array();
      for (const KindInventory *inventory : inventories) write_found(json, *inventory);
      json.end_array();
    });
  std::vector<std::string> parts;
  for (const KindInventory *inventory : inventories)
    if (std::string part = found(*inventory); !part.empty()) parts.push_back(std::move(part));
  return fmt::format("{} watching {}\n", time_of_day(when),
                     parts.empty() ? "for store files: there are none yet" : joined(parts, ", "));
}

}  // namespace mcstore
