// mcstore get: what the devices of a kind are.

#include <fmt/core.h>

#include <algorithm>
#include <ctime>
#include <memory>

#include "mcstore/commands/command.h"
#include "mcstore/commands/options.h"
#include "mcstore/commands/output.h"
#include "mcstore/commands/presentation.h"
#include "mcstore/commands/validators.h"
#include "mcstore/kinds/nearest.h"
#include "mcstore/kinds/printable.h"
#include "mcstore/views/columns.h"
#include "mcstore/views/list.h"
#include "mcstore/views/selection.h"

namespace mcstore {
namespace {

struct GetOptions {
  SourceOptions source;
  std::string kind;
  std::string format = format_names().front();
  bool has_format = false;  // one was asked for
  bool is_raw_xml = false;
  std::vector<std::string> filters;
  Selection selection;
  PresentationOptions presentation;
  ColourChoice colour = ColourChoice::kAuto;
};

// What is wrong with a column's name: nothing if one of the kinds has it.
std::string column_problem(const std::vector<const Kind *> &chosen, const std::string &word) {
  std::vector<std::string> known;
  for (const Kind *kind : chosen) {
    if (find_column(*kind, word)) return {};
    for (const Column &column : every_column(*kind)) known.push_back(column.name);
    for (const Column &column : chosen_columns(*kind))
      if (!equal_but_for_case(column.heading, column.name)) known.push_back(column.heading);
  }
  std::ranges::sort(known);
  known.erase(std::unique(known.begin(), known.end()), known.end());
  return fmt::format("there is no column '{}'; the nearest: {}", word, nearest(word, known));
}

// What is refused beside a reply that is shown as it is.
std::string whole_reply_problem(const GetOptions &options) {
  const PresentationOptions &shown = options.presentation;
  const bool has_selection =
      !options.selection.devices.empty() || !options.selection.filters.empty() || !options.selection.sort.empty();
  const bool has_columns = !shown.columns.empty() || shown.has_all_columns;
  if (options.is_raw_xml && (has_selection || has_columns || options.has_format))
    return "--raw-xml shows a whole reply as it is: leave out DEVICE, --format, --filter, --sort and columns";
  if (options.format == "hex" && has_selection)
    return "--format hex shows a whole reply as it is: leave out DEVICE, --filter and --sort";
  return {};
}

// What cannot be done as it was asked.
std::string problem(const GetOptions &options, const std::vector<const Kind *> &chosen) {
  const PresentationOptions &shown = options.presentation;
  const bool has_columns = options.format == "table" || options.format == "csv";
  if (options.format == "csv" && chosen.size() > 1)
    return "--format csv: a table holds one kind: choose one instead of 'all'";
  if (!has_columns && !shown.columns.empty()) return "--columns: only the formats table and csv have columns";
  if (options.is_raw_xml && std::ranges::any_of(chosen, [](const Kind *kind) { return kind->layout.has_value(); }))
    return "--raw-xml: only nvme-controllers and nvme-drives are reported in XML: choose one of them";
  if (std::string text = whole_reply_problem(options); !text.empty()) return text;

  std::vector<std::string> names = shown.columns;
  if (!options.selection.sort.empty()) names.push_back(options.selection.sort);
  for (const Filter &filter : options.selection.filters) names.push_back(filter.column);
  for (const std::string &name : names)
    if (std::string text = column_problem(chosen, name); !text.empty()) return text;
  return {};
}

// What was found of what was asked for.
class Findings {
 public:
  explicit Findings(const GetOptions &options) : options_(options) {}

  // Tells what is wrong with the kind; of the rest, what the presentation does not.
  void take(const KindInventory &inventory, bool is_told) {
    const bool is_failure = inventory.status == KindStatus::kUnreadable || inventory.status == KindStatus::kDamaged;
    has_failed_ |= is_failure;
    has_data_ |= inventory.has_data();
    if (is_failure) complain(inventory.error, kFailure);
    if (inventory.status == KindStatus::kAbsent) why_absent_ = inventory.error;
    for (const std::string &remark : is_told || is_failure ? std::vector<std::string>() : remarks(inventory))
      complain(fmt::format("{}: {}", inventory.kind->name, remark), kSuccess);
    if (!options_.selection.devices.empty()) take_names(inventory);
  }

  int exit_code() const {
    if (!has_data_ && !has_failed_) {
      const std::string why = options_.kind == kAllKinds ? kNoStoreFiles : why_absent_;
      return complain(nothing_there(options_.source, why), kNothingThere);
    }
    bool is_missing = false;
    for (const std::string &word : options_.selection.devices)
      if (std::ranges::count(found_, word) == 0) is_missing = complain(no_such_device(word), kNothingThere) != 0;
    if (has_failed_) return kFailure;
    return is_missing ? kNothingThere : kSuccess;
  }

 private:
  void take_names(const KindInventory &inventory) {
    for (size_t i = 0; i < inventory.size(); ++i) {
      const Device device = inventory.device(i);
      names_.push_back(device.name());
      for (const std::string &word : options_.selection.devices)
        if (device.is_called(word)) found_.push_back(word);
    }
  }

  std::string no_such_device(const std::string &word) const {
    if (names_.empty()) return fmt::format("no device is called '{}': there is none", word);
    return fmt::format("no device is called '{}': there are {}, the nearest: {}", word, names_.size(),
                       nearest(word, names_));
  }

  const GetOptions &options_;
  bool has_data_ = false;
  bool has_failed_ = false;
  std::string why_absent_;
  std::vector<std::string> names_;
  std::vector<std::string> found_;
};

// As the bytes came, but for terminals.
void print_raw(Record reply) {
  const std::string_view text(reinterpret_cast<const char *>(reply.data()), reply.size());
  print(terminal_width() ? printable(text) + '\n' : std::string(text));
}

int get(GetOptions options) {
  for (const std::string &text : options.filters) {
    const std::optional<Filter> filter = Filter::parse(text);
    if (!filter) return complain(fmt::format("--filter: '{}' is not KEY=VALUE", text), kUsage);
    options.selection.filters.push_back(*filter);
  }
  const std::vector<const Kind *> chosen = chosen_kinds(options.kind);
  const std::string refusal = problem(options, chosen);
  if (!refusal.empty()) return complain(refusal, kUsage);

  PresentationOptions &shown = options.presentation;
  const std::optional<size_t> width = terminal_width();
  const bool has_colour = wants_colour(options.colour, width.has_value());
  shown.style = {.width = width, .has_colour = has_colour, .has_header = shown.has_header};
  shown.has_one_kind = chosen.size() == 1;
  shown.shows_rows = !options.selection.devices.empty() && shown.columns.empty() && !shown.has_all_columns;

  Source source(options.source);
  const Judge judge({.now = time(nullptr)});
  const auto presentation = make_presentation(options.format, shown, judge, source);
  Findings findings(options);
  presentation->begin();
  for (const Kind *kind : chosen) {
    const KindInventory inventory = source.read(*kind);
    if (options.is_raw_xml && inventory.has_data())
      print_raw(source.reply(*kind));
    else
      presentation->show(inventory, select(inventory, options.selection, judge));
    findings.take(inventory, presentation->tells_remarks());
  }
  presentation->end();
  return findings.exit_code();
}

}  // namespace

void add_get(CLI::App &app, Action &action) {
  const auto options = std::make_shared<GetOptions>();
  CLI::App &command = *app.add_subcommand("get", "Show the devices of a kind");
  add_kind(command, options->kind)->required();
  command
      .add_option("DEVICE", options->selection.devices,
                  "Show every field of these alone, by their names or serial numbers")
      ->type_name("");
  command.add_option("--format", options->format, "How to show them")
      ->each([options](const std::string &) { options->has_format = true; })
      ->type_name("FORMAT")
      ->check(one_of(format_names()))
      ->capture_default_str();
  CLI::Option &columns = *command
                              .add_option("--columns", options->presentation.columns,
                                          "Show these: headings, or names of fields, with commas between them")
                              ->type_name("A,B")
                              ->delimiter(',');
  command.add_flag("--all-columns", options->presentation.has_all_columns, "Show all but bytes and arrays")
      ->excludes(&columns);
  command
      .add_option("--sort", options->selection.sort, "Sort by this column: health from the worst on, numbers as such")
      ->type_name("COLUMN");
  command
      .add_option("--filter", options->filters,
                  "Show only devices whose column KEY shows VALUE, or is that number; all filters must fit")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  command.add_flag_callback(
      "--no-header", [options] { options->presentation.has_header = false; }, "Leave out titles and headings");
  command.add_flag("--raw-xml", options->is_raw_xml, "Show the XML of NVMe kinds as the plug-in wrote it");
  add_colour_option(command, options->colour);
  add_source_options(command, options->source);
  command.footer(
      "Examples:\n"
      "  mcstore get all\n"
      "  mcstore get drives --filter health=CRITICAL --columns device,serial_num,pd_error\n"
      "  mcstore get drives c0/e62/s2");
  command.callback([options, &action] { action = [options] { return get(*options); }; });
}

}  // namespace mcstore
