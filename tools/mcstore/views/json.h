// The inventory in JSON: as one document, or a line for each device. docs/json.md describes both.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "mcstore/health/judge.h"
#include "mcstore/inventory/inventory.h"
#include "mcstore/json/json_writer.h"

namespace mcstore {

// Called behind each device: the caller may take away what has been appended, and empty the string.
using Taker = std::function<void()>;

// What stands before the devices.
struct DocumentHead {
  std::string_view version;  // of this tool
  std::string time;          // ISO 8601, in UTC
  std::string root;          // where the inventory is from
};

// One document for all kinds, made one device at a time.
class JsonDocument {
 public:
  // Begins the document, which is appended to `out`.
  JsonDocument(std::string &out, const Judge &judge, const DocumentHead &head);

  void add(const KindInventory &inventory, const Taker &take);

  // Ends the document: without it there is none.
  void end();

 private:
  std::string &out_;
  const Judge &judge_;
  JsonWriter json_;
};

// A line for each device.
void append_ndjson(std::string &out, const KindInventory &inventory, const Judge &judge, const Taker &take);

}  // namespace mcstore
