#include "mcstore/commands/presentation.h"

#include <fmt/core.h>

#include <algorithm>
#include <ctime>
#include <stdexcept>

#include "mcstore/commands/output.h"
#include "mcstore/kinds/unit.h"
#include "mcstore/views/columns.h"
#include "mcstore/views/csv.h"
#include "mcstore/views/hex.h"
#include "mcstore/views/json.h"
#include "mcstore/views/list.h"
#include "mcstore/views/rows.h"
#include "mcstore/views/xml.h"

namespace mcstore {
namespace {

struct Needs {
  PresentationOptions options;
  const Judge &judge;
  Source &source;
};

std::vector<Column> named_columns(const Kind &kind, const std::vector<std::string> &names) {
  std::vector<Column> columns;
  for (const std::string &name : names)
    if (const std::optional<Column> column = find_column(kind, name)) columns.push_back(*column);
  return columns;
}

class AsTable : public Presentation {
 public:
  explicit AsTable(Needs needs) : needs_(std::move(needs)) {}

  void show(const KindInventory &inventory, const std::vector<size_t> &positions) override {
    const bool is_elsewhere = needs_.options.shows_rows && !needs_.options.has_one_kind && positions.empty();
    if (is_elsewhere) return;
    std::string text;
    if (tells_remarks()) text += title_lines(inventory, positions.size());
    if (needs_.options.shows_rows)
      text += rows(inventory, positions);
    else
      text += list(inventory, positions);
    if (text.empty()) return;
    const bool is_block = !positions.empty();
    print((is_block || is_behind_block_) && !is_first_ && needs_.options.has_header ? '\n' + text : text);
    is_first_ = false;
    is_behind_block_ = is_block;
  }

  bool tells_remarks() const override { return needs_.options.has_header; }

 private:
  std::vector<Column> columns(const Kind &kind) const {
    if (!needs_.options.columns.empty()) return named_columns(kind, needs_.options.columns);
    return needs_.options.has_all_columns ? all_columns(kind) : chosen_columns(kind);
  }

  // Of all kinds, some may have none of the columns that were named.
  std::string list(const KindInventory &inventory, const std::vector<size_t> &positions) const {
    const std::vector<Column> shown = columns(*inventory.kind);
    if (shown.empty()) return tells_remarks() && !positions.empty() ? "  has none of these columns\n" : "";
    return device_list(inventory, positions, shown, needs_.judge, needs_.options.style);
  }

  std::string rows(const KindInventory &inventory, const std::vector<size_t> &positions) const {
    std::string text;
    for (const size_t position : positions) {
      if (!text.empty()) text += '\n';
      const Device device = inventory.device(position);
      text += device_rows(device, needs_.judge.judge(device), needs_.options.style);
    }
    return text;
  }

  Needs needs_;
  bool is_first_ = true;
  bool is_behind_block_ = false;  // of devices, which empty lines surround
};

class AsJson : public Presentation {
 public:
  explicit AsJson(Needs needs) : needs_(std::move(needs)) {}

  void begin() override {
    struct timespec now = {};
    now.tv_sec = time(nullptr);
    document_.begin({.version = MCSTORE_VERSION, .time = iso_time(now), .root = needs_.source.place().directory()});
  }

  void show(const KindInventory &inventory, const std::vector<size_t> &positions) override {
    document_.begin_kind(inventory);
    for (const size_t position : positions) {
      const Device device = inventory.device(position);
      document_.add(device, needs_.judge.judge(device));
      printer_.print(text_);
      text_.clear();
    }
    document_.end_kind();
  }

  void end() override {
    document_.end();
    printer_.print(text_);
    printer_.flush();
  }

 private:
  Needs needs_;
  Printer printer_;
  std::string text_;
  JsonDocument document_{text_};
};

class AsNdjson : public Presentation {
 public:
  explicit AsNdjson(Needs needs) : needs_(std::move(needs)) {}

  void show(const KindInventory &inventory, const std::vector<size_t> &positions) override {
    for (const size_t position : positions) {
      const Device device = inventory.device(position);
      printer_.print(ndjson_line(device, needs_.judge.judge(device)));
    }
  }

  void end() override { printer_.flush(); }

  bool tells_remarks() const override { return false; }

 private:
  Needs needs_;
  Printer printer_;
};

class AsCsv : public Presentation {
 public:
  explicit AsCsv(Needs needs) : needs_(std::move(needs)) {}

  void show(const KindInventory &inventory, const std::vector<size_t> &positions) override {
    const Kind &kind = *inventory.kind;
    const bool has_choice = !needs_.options.columns.empty();
    const std::vector<Column> columns = has_choice ? named_columns(kind, needs_.options.columns) : every_column(kind);
    Printer printer;
    if (needs_.options.has_header) printer.print(csv_header(columns));
    for (const size_t position : positions) {
      const Device device = inventory.device(position);
      printer.print(csv_line(device, needs_.judge.judge(device).health, columns));
    }
    printer.flush();
  }

  bool tells_remarks() const override { return false; }

 private:
  Needs needs_;
};

class AsXml : public Presentation {
 public:
  explicit AsXml(Needs needs) : needs_(std::move(needs)) {}

  void begin() override { printer_.print(xml_begin(needs_.source.place().directory())); }

  void show(const KindInventory &inventory, const std::vector<size_t> &positions) override {
    printer_.print(xml_kind_begin(inventory));
    for (const size_t position : positions) {
      const Device device = inventory.device(position);
      printer_.print(xml_device(device, needs_.judge.judge(device)));
    }
    printer_.print(xml_kind_end());
  }

  void end() override {
    printer_.print(xml_end());
    printer_.flush();
  }

 private:
  Needs needs_;
  Printer printer_;
};

// The plug-in's reply, which is there even where nobody can make anything of it.
class AsHex : public Presentation {
 public:
  explicit AsHex(Needs needs) : needs_(std::move(needs)) {}

  void show(const KindInventory &inventory, const std::vector<size_t> &) override {
    if (!needs_.options.has_one_kind) print(fmt::format("{}:\n", inventory.kind->title));
    if (inventory.status == KindStatus::kAbsent) return;
    print(hex_dump(reply(*inventory.kind)));
  }

  bool tells_remarks() const override { return false; }

 private:
  // Nothing where there is none: reading the inventory has met the same, so that it is told.
  Record reply(const Kind &kind) {
    try {
      return needs_.source.reply(kind);
    } catch (const std::runtime_error &) {
      return {};
    }
  }

  Needs needs_;
};

struct Format {
  const char *name;
  std::unique_ptr<Presentation> (*make)(Needs needs);
};

template <typename As>
std::unique_ptr<Presentation> make(Needs needs) {
  return std::make_unique<As>(std::move(needs));
}

constexpr Format kFormats[] = {
    {"table", make<AsTable>}, {"json", make<AsJson>}, {"ndjson", make<AsNdjson>},
    {"csv", make<AsCsv>},     {"xml", make<AsXml>},   {"hex", make<AsHex>},
};

}  // namespace

std::vector<std::string> format_names() {
  std::vector<std::string> names;
  for (const Format &format : kFormats) names.emplace_back(format.name);
  return names;
}

std::unique_ptr<Presentation> make_presentation(const std::string &format, const PresentationOptions &options,
                                                const Judge &judge, Source &source) {
  return std::ranges::find(kFormats, format, &Format::name)->make({options, judge, source});
}

}  // namespace mcstore
