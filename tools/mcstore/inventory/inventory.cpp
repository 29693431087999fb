#include "mcstore/inventory/inventory.h"

#include <algorithm>

namespace mcstore {

Device KindInventory::device(size_t position) const {
  const Record record = Record(records).subspan(position * kind->record_size, kind->record_size);
  const auto completed = stored.find(position);
  return {*kind, position, record, completed == stored.end() ? record : Record(completed->second)};
}

const char *word_for(KindStatus status) {
  switch (status) {
    case KindStatus::kFine:
      return "fine";
    case KindStatus::kAbsent:
      return "absent";
    case KindStatus::kUnreadable:
      return "unreadable";
    case KindStatus::kDamaged:
      return "damaged";
    case KindStatus::kSimulated:
      return "simulated";
  }
  return "";
}

const char *state_word(const KindInventory &inventory) {
  if (!inventory.state || !inventory.kind->stored_state) return nullptr;
  const auto &words = inventory.kind->stored_state->meaning.words;
  const auto word = std::ranges::find(words, *inventory.state, &mcserver::Word::value);
  return word == words.end() ? nullptr : word->text;
}

std::string state_text(const KindInventory &inventory) {
  if (!inventory.state) return "";
  const char *word = state_word(inventory);
  return word ? word : std::to_string(*inventory.state);
}

}  // namespace mcstore
