// The formats of mcstore get.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "mcstore/health/judge.h"
#include "mcstore/inventory/source.h"
#include "mcstore/views/table.h"

namespace mcstore {

// What a format needs to know of what was asked.
struct PresentationOptions {
  std::vector<std::string> columns = {};  // headings or names; empty for those that the format shows by itself
  bool has_all_columns = false;
  bool has_header = true;
  bool has_one_kind = true;
  bool shows_rows = false;  // devices were named, and each of their fields is wanted
  TableStyle style = {};
};

// Prints kinds, one at a time, as they are read.
class Presentation {
 public:
  virtual ~Presentation() = default;

  virtual void begin() {}
  // The devices at these positions, in this order.
  virtual void show(const KindInventory &inventory, const std::vector<size_t> &positions) = 0;
  virtual void end() {}

  // Does it tell what there is to know of a kind beside its devices? Otherwise standard error does.
  virtual bool tells_remarks() const { return true; }
};

// The names of the formats, the first one being what people read.
std::vector<std::string> format_names();

// The format of this name, which must be one of them.
std::unique_ptr<Presentation> make_presentation(const std::string &format, const PresentationOptions &options,
                                                const Judge &judge, Source &source);

}  // namespace mcstore
