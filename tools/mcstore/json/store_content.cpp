#include "mcstore/json/store_content.h"

#include <fmt/core.h>

#include <algorithm>

#include "mcstore/health/rules.h"
#include "mcstore/inventory/inventory.h"
#include "mcstore/json/flash_module.h"
#include "mcstore/json/inventory_format.h"
#include "mcstore/json/json_input.h"
#include "mcstore/json/record_input.h"
#include "mcstore/kinds/kind.h"
#include "mcstore/kinds/value.h"
#include "records/bbu_record.h"

namespace mcstore {
namespace {

constexpr KindStatus kStatuses[] = {KindStatus::kFine, KindStatus::kAbsent, KindStatus::kUnreadable,
                                    KindStatus::kDamaged, KindStatus::kSimulated};
constexpr KindStatus kWithoutStore[] = {KindStatus::kAbsent, KindStatus::kUnreadable};
constexpr KindStatus kWithoutWholeStore[] = {KindStatus::kDamaged, KindStatus::kSimulated};

KindStatus parse_status(const Json &value, const std::string &place) {
  const auto status =
      std::ranges::find_if(kStatuses, [&](KindStatus one) { return value.is_string() && value == word_for(one); });
  if (status == std::end(kStatuses)) refuse(place, "is not a status of a kind");
  return *status;
}

const Kind &parse_kind(const Json &object, const std::string &place) {
  if (!as_object(object, place).contains("kind")) refuse(place, "has no key \"kind\"");
  const Kind *kind = object["kind"].is_string() ? find_kind(object["kind"].get<std::string>()) : nullptr;
  if (!kind) refuse(member_of(place, "kind"), "is not the name of a kind of device");
  return *kind;
}

void append_device(std::vector<uint8_t> &file, const Json &object, const Kind &kind, const std::string &place) {
  refuse_other_keys(as_object(object, place), {"device", "health", "reasons", "notes", "fields"}, place);
  file.resize(file.size() + kind.record_size);
  if (object.contains("fields"))
    store_device(object["fields"], kind, std::span(file).last(kind.record_size), member_of(place, "fields"));
}

// The number of devices follows from them, so that it is always right.
std::vector<uint8_t> header_of(const Kind &kind, const Json &object, size_t devices) {
  std::vector<uint8_t> header(total_width(kind.store_header));
  const std::string place = member_of(std::string(kind.name), "state");
  if (kind.stored_state && object.contains("state") && !object["state"].is_null())
    store_number(object["state"], *kind.stored_state, header, place);
  if (kind.stored_count) store_number(devices, *kind.stored_count, header, place);
  return header;
}

StoreContent parse_store(const Kind &kind, const Json &object) {
  const std::string place = member_of(std::string(kind.name), "devices");
  const Json none = Json::array();
  const Json &devices = as_array(object.contains("devices") ? object["devices"] : none, place);
  if (devices.size() > kind.greatest_count)
    refuse(place,
           fmt::format("has {} devices: readers of the file take {} at most", devices.size(), kind.greatest_count));

  StoreContent store{
      .lock_path = kind.lock_path, .path = kind.store_path, .bytes = header_of(kind, object, devices.size())};
  for (size_t i = 0; i < devices.size(); ++i)
    append_device(store.bytes, devices[i], kind, fmt::format("{}[{}]", place, i));
  return store;
}

std::string omission_of(const Kind &kind, KindStatus status, const Json &object) {
  std::string line = fmt::format("{}: not written, since they are {}", kind.name, word_for(status));
  if (object.contains("error") && object["error"].is_string()) line += ": " + object["error"].get<std::string>();
  return line;
}

// A kind that has no file leaves none: what is written tells nothing of it. A clean file of devices that are not all,
// or made up, would tell something else of them.
void append_store(StoredInventory &inventory, const Json &object, const std::string &place) {
  const Kind &kind = parse_kind(object, place);
  const std::string name(kind.name);
  refuse_other_keys(object, {"kind", "status", "error", "notes", "state", "state_text", "store", "devices"}, name);
  const KindStatus status =
      object.contains("status") ? parse_status(object["status"], member_of(name, "status")) : KindStatus::kFine;
  if (std::ranges::find(kWithoutStore, status) != std::end(kWithoutStore)) return;
  if (std::ranges::find(kWithoutWholeStore, status) != std::end(kWithoutWholeStore)) {
    inventory.omissions.push_back(omission_of(kind, status, object));
    return;
  }
  if (kind.store_path.empty()) refuse(name, "this kind has no store file");
  if (std::ranges::find(inventory.stores, kind.store_path, &StoreContent::path) != inventory.stores.end())
    refuse(place, fmt::format("{} stand twice in this inventory", kind.name));
  inventory.stores.push_back(parse_store(kind, object));
}

// A store of no devices, in the state in which that is to be believed.
StoreContent empty_store(const Kind &kind) {
  const auto rule = std::ranges::find(state_rules(), kind.name, &StateRule::kind);
  const Json object = rule == state_rules().end() ? Json::object() : Json{{"state", rule->good}};
  StoreContent store = parse_store(kind, object);
  store.only_if_missing = true;
  return store;
}

std::vector<StoreContent> lock_files_beside(const std::vector<StoreContent> &stores) {
  std::vector<StoreContent> files;
  for (const Kind &kind : kinds()) {
    const bool is_locked = std::ranges::count(stores, kind.store_path, &StoreContent::lock_path) > 0;
    const bool is_written = std::ranges::count(stores, kind.store_path, &StoreContent::path) > 0;
    if (is_locked && !is_written) files.push_back(empty_store(kind));
  }
  return files;
}

}  // namespace

StoredInventory parse_inventory(const std::string &json_text) {
  const Json document = parse_json(json_text);
  as_object(document, "the inventory");
  if (!document.contains("format") || document["format"] != kInventoryFormat)
    refuse("format", fmt::format("must be {}", kInventoryFormat));
  refuse_other_keys(document, {"format", "tool", "time", "root", "kinds", kFlashModuleKey}, "");

  StoredInventory inventory;
  if (document.contains("kinds")) {
    const Json &kinds = as_array(document["kinds"], "kinds");
    for (size_t i = 0; i < kinds.size(); ++i) append_store(inventory, kinds[i], fmt::format("kinds[{}]", i));
  }
  if (const std::string key(kFlashModuleKey); document.contains(key))
    inventory.stores.push_back({.lock_path = mcserver::records::kRaidLockPath,
                                .path = mcserver::records::kFlashModulePath,
                                .bytes = flash_module_image(document[key], key)});
  const std::vector<StoreContent> lock_files = lock_files_beside(inventory.stores);
  inventory.stores.insert(inventory.stores.begin(), lock_files.begin(), lock_files.end());
  return inventory;
}

}  // namespace mcstore
