#include "mcstore/inventory/changes.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <map>

namespace mcstore {
namespace {

constexpr char kNothing[] = "none";

ShownValue value_of(const Device &device, const Field &field) {
  ShownValue value{device.text(field)};
  if (is_numeric(field) && device.is_known(field)) value.number = raw_number(device.record(), field);
  return value;
}

// What is large may differ by less than its text shows.
void tell_apart(ShownValue &before, ShownValue &after) {
  if (before.text != after.text) return;
  for (ShownValue *value : {&before, &after})
    if (value->number) value->text += fmt::format(" ({})", *value->number);
}

// Appends the change, if it is one.
void note(std::vector<FieldChange> &changes, FieldChange change) {
  if (change.before == change.after) return;
  tell_apart(change.before, change.after);
  changes.push_back(std::move(change));
}

std::vector<Record> counted_entries(const Device &device, const Field &field) {
  return entries_of(device.record(), field, raw_number(device.record(), *device.find(field.entries->count)));
}

void compare_entries(const Device &before, const Device &after, const Field &field, std::vector<FieldChange> &changes) {
  const std::vector<Record> old_entries = counted_entries(before, field);
  const std::vector<Record> new_entries = counted_entries(after, field);
  const auto value_at = [&](const std::vector<Record> &entries, size_t i) {
    return ShownValue{i < entries.size() ? entry_text(entries[i], field) : kNothing};
  };
  for (size_t i = 0; i < std::max(old_entries.size(), new_entries.size()); ++i)
    note(changes, {.name = fmt::format("{}[{}]", field.name, i),
                   .field = &field,
                   .before = value_at(old_entries, i),
                   .after = value_at(new_entries, i)});
}

// The other device's field of that name: devices of one kind may have different tables.
const Field *counterpart(const Device &other, const Device &device, const Field &field) {
  return other.fields().data() == device.fields().data() ? &field : other.find(field.name);
}

std::vector<FieldChange> field_changes(const Device &before, const Device &after) {
  std::vector<FieldChange> changes;
  if (std::ranges::equal(before.record(), after.record())) return changes;  // most devices, most of the time
  for (const Field &field : after.fields()) {
    const Field *old_field = counterpart(before, after, field);
    if (old_field && field.entries)
      compare_entries(before, after, field, changes);
    else
      note(changes, {.name = field.name,
                     .field = &field,
                     .before = old_field ? value_of(before, *old_field) : ShownValue{kNothing},
                     .after = value_of(after, field)});
  }
  for (const Field &field : before.fields())
    if (!counterpart(after, before, field))
      note(changes, {.name = field.name, .field = &field, .before = value_of(before, field), .after = {kNothing}});
  return changes;
}

bool is_simulated(const KindInventory &inventory) { return inventory.status == KindStatus::kSimulated; }

bool are_comparable(const KindInventory &before, const KindInventory &after) {
  return before.has_data() && after.has_data() && is_simulated(before) == is_simulated(after);
}

// What a damaged file holds, by which a change for the worse shows. Its error would not do: that may name a place.
std::array<std::optional<uint64_t>, 3> figures_of(const KindInventory &inventory) {
  if (inventory.status != KindStatus::kDamaged || !inventory.store) return {};
  return {inventory.store->announced, inventory.store->records, inventory.store->left_over};
}

ShownValue state_of(const KindInventory &inventory) {
  return {inventory.state ? state_text(inventory) : kNothing, inventory.state};
}

ShownValue count_of(const KindInventory &inventory) {
  if (!inventory.has_data()) return {kNothing};
  return {std::to_string(inventory.size()), inventory.size()};
}

// That there is no file is said by the status.
ShownValue error_of(const KindInventory &inventory) {
  const bool says_more = !inventory.error.empty() && inventory.status != KindStatus::kAbsent;
  return {says_more ? inventory.error : kNothing};
}

// Compares devices with those of another look at them, each of which has one counterpart at most.
class Pairing {
 public:
  explicit Pairing(const KindInventory &inventory) : inventory_(inventory), is_left_(inventory.size(), true) {
    for (size_t i = 0; i < inventory.size(); ++i) positions_.emplace(inventory.device(i).identity(), i);
  }

  // Takes the first device of this identity that is left.
  std::optional<Device> take(const std::string &identity) {
    const auto found = positions_.lower_bound(identity);
    if (found == positions_.end() || found->first != identity) return {};
    const size_t position = found->second;
    positions_.erase(found);
    is_left_[position] = false;
    return inventory_.device(position);
  }

  bool is_left(size_t position) const { return is_left_[position]; }

 private:
  const KindInventory &inventory_;
  std::multimap<std::string, size_t> positions_;
  std::vector<bool> is_left_;
};

}  // namespace

const char *word_for(ChangeType type) {
  switch (type) {
    case ChangeType::kCame:
      return "came";
    case ChangeType::kWent:
      return "went";
    case ChangeType::kChanged:
      return "changed";
    case ChangeType::kStatus:
      return "status";
  }
  return "";
}

std::vector<Change> status_changes(const KindInventory &before, const KindInventory &before_with_data,
                                   const KindInventory &after) {
  Change change{.type = ChangeType::kStatus, .kind = after.kind};
  if (before.status != after.status || figures_of(before) != figures_of(after)) {
    note(change.fields, {.name = "status", .before = {word_for(before.status)}, .after = {word_for(after.status)}});
    note(change.fields, {.name = "error", .before = error_of(before), .after = error_of(after)});
    note(change.fields, {.name = "devices", .before = count_of(before), .after = count_of(after)});
  }
  if (are_comparable(before_with_data, after))
    note(change.fields, {.name = "state", .before = state_of(before_with_data), .after = state_of(after)});
  return change.fields.empty() ? std::vector<Change>() : std::vector<Change>{change};
}

std::vector<Change> data_changes(const KindInventory &before, const KindInventory &after) {
  if (!are_comparable(before, after)) return {};
  std::vector<Change> changes;
  Pairing pairing(after);
  for (size_t i = 0; i < before.size(); ++i) {
    const Device device = before.device(i);
    const std::optional<Device> now = pairing.take(device.identity());
    if (!now && after.status != KindStatus::kDamaged) changes.push_back({ChangeType::kWent, after.kind, device});
    std::vector<FieldChange> fields = now ? field_changes(device, *now) : std::vector<FieldChange>();
    if (!fields.empty()) changes.push_back({ChangeType::kChanged, after.kind, now, std::move(fields)});
  }
  for (size_t i = 0; i < after.size(); ++i)
    if (pairing.is_left(i) && before.status != KindStatus::kDamaged)
      changes.push_back({ChangeType::kCame, after.kind, after.device(i)});
  return changes;
}

KindInventory remembered(const KindInventory &known, const KindInventory &look) {
  if (!look.has_data()) return known;
  if (look.status != KindStatus::kDamaged || !are_comparable(known, look)) return look;
  KindInventory all(*look.kind);
  all.status = known.status;
  all.state = look.state;
  const auto add = [&](const Device &device) {
    all.records.insert(all.records.end(), device.record().begin(), device.record().end());
  };
  Pairing pairing(look);
  for (size_t i = 0; i < known.size(); ++i) {
    const Device device = known.device(i);
    add(pairing.take(device.identity()).value_or(device));
  }
  for (size_t i = 0; i < look.size(); ++i)
    if (pairing.is_left(i)) add(look.device(i));
  return all;
}

}  // namespace mcstore
