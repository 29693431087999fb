#include "mcstore/views/json.h"

#include "mcstore/json/inventory_format.h"
#include "mcstore/kinds/unit.h"
#include "mcstore/views/json_device.h"

namespace mcstore {
namespace {

void text_or_null(JsonWriter &json, std::string_view text) {
  if (text.empty())
    json.null();
  else
    json.text(text);
}

void number_or_null(JsonWriter &json, const std::optional<uint64_t> &number) {
  if (number)
    json.number(*number);
  else
    json.null();
}

void write_store(JsonWriter &json, const std::optional<StoreFacts> &store) {
  if (!store) return json.null();
  json.begin_object();
  json.key("path").text(store->path);
  text_or_null(json.key("modified"), iso_time(store->modified));
  json.key("size").number(store->size);
  number_or_null(json.key("announced"), store->announced);
  json.key("records").number(store->records);
  json.key("left_over").number(store->left_over);
  json.end_object();
}

}  // namespace

void JsonDocument::begin(const DocumentHead &head) {
  json_.begin_object();
  json_.key("format").number(kInventoryFormat);
  json_.key("tool").begin_object();
  json_.key("name").text("mcstore");
  json_.key("version").text(head.version);
  json_.end_object();
  json_.key("time").text(head.time);
  json_.key("root").text(head.root);
  json_.key("kinds").begin_array();
}

void JsonDocument::begin_kind(const KindInventory &inventory) {
  json_.begin_object();
  json_.key("kind").text(inventory.kind->name);
  json_.key("status").text(word_for(inventory.status));
  text_or_null(json_.key("error"), inventory.error);
  write_texts(json_.key("notes"), inventory.notes);
  number_or_null(json_.key("state"), inventory.state);
  if (const char *word = state_word(inventory)) json_.key("state_text").text(word);
  write_store(json_.key("store"), inventory.store);
  json_.key("devices").begin_array();
}

void JsonDocument::add(const Device &device, const Verdict &verdict) {
  json_.begin_object();
  write_device(json_, device, verdict);
  json_.end_object();
}

void JsonDocument::end_kind() {
  json_.end_array();
  json_.end_object();
}

void JsonDocument::end() {
  json_.end_array();
  json_.end_object();
  out_ += '\n';
}

std::string ndjson_line(const Device &device, const Verdict &verdict) {
  std::string line;
  JsonWriter json(line, JsonWriter::Layout::kOneLine);
  json.begin_object();
  json.key("kind").text(device.kind().name);
  write_device(json, device, verdict);
  json.end_object();
  line += '\n';
  return line;
}

}  // namespace mcstore
