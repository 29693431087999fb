// Where an inventory comes from: the plug-in, reading the store files of a place.
#pragma once

#include <optional>
#include <string>

#include "mcstore/inventory/inventory.h"
#include "mcstore/source/place.h"
#include "mcstore/source/session.h"
#include "mcstore/source/store_lock.h"

namespace mcstore {

struct SourceOptions {
  std::string from = {};  // as Place takes it
  SessionOptions session = {};
  Patience patience = {};
};

class Source {
 public:
  // Throws std::runtime_error when the plug-in cannot be loaded.
  explicit Source(const SourceOptions &options);

  const Place &place() const { return place_; }

  // Reads a kind while the collector cannot write. Whatever goes wrong is in what it returns.
  KindInventory read(const Kind &kind);

  // The reply's bytes as they came, until the next call. Throws PluginFailure, Missing or Unreadable.
  Record reply(const Kind &kind);

 private:
  // Nothing when the file was replaced by another one meanwhile.
  std::optional<KindInventory> read_once(const Kind &kind);

  Place place_;
  Patience patience_;
  Session session_;
};

}  // namespace mcstore
