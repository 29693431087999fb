// What a source says of a kind: its devices, and how far that is to be believed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "mcstore/kinds/device.h"
#include "mcstore/kinds/kind.h"

namespace mcstore {

enum class KindStatus {
  kFine,
  kAbsent,      // there is no store file
  kUnreadable,  // there is one, or something in its place, and it cannot be read
  kDamaged,     // it does not hold what it should; the devices are those that it has
  kSimulated,   // the devices are made up
};

// What a reply does not say of the store file.
struct StoreFacts {
  std::string path = {};  // as the plug-in knows it
  struct timespec modified = {};
  uint64_t size = 0;
  std::optional<uint64_t> announced = {};  // records, where the header says so
  uint64_t records = 0;                    // whole ones that it holds
  uint64_t left_over = 0;                  // bytes behind them
};

class KindInventory {
 public:
  explicit KindInventory(const Kind &the_kind) : kind(&the_kind) {}

  const Kind *kind;
  KindStatus status = KindStatus::kFine;
  std::string error = {};               // why the status is not fine; one line, with the file and the reason
  std::vector<std::string> notes = {};  // what else there is to know of these values
  std::optional<uint64_t> state = {};   // the subsystem's, where the kind has one
  std::optional<StoreFacts> store = {};

  std::vector<uint8_t> records = {};  // one behind the other, as a store file holds them
  // The bytes in the store file, for those records that the plug-in has completed.
  std::map<size_t, std::vector<uint8_t>> stored = {};

  size_t size() const { return records.size() / kind->record_size; }
  Device device(size_t position) const;

  // Is there a store file, or a simulation?
  bool has_data() const { return status != KindStatus::kAbsent && status != KindStatus::kUnreadable; }
};

// "fine", "absent", ...: the same in JSON.
const char *word_for(KindStatus status);

// The word for the state; null when it has none.
const char *state_word(const KindInventory &inventory);

// The state as its word, or its number.
std::string state_text(const KindInventory &inventory);

}  // namespace mcstore
