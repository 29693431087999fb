#include "mcstore/decode/decoding.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/redirection.h"
#include "mcstore/decode/decoded_text.h"
#include "mcstore/decode/discarded.h"
#include "mcstore/source/failure.h"
#include "mcstore/source/session.h"
#include "mcstore/source/store_file.h"

namespace mcstore {
namespace {

namespace fs = std::filesystem;

using Decoder = int(const char *input_dir, const char *output_dir);

// The decoders cut longer ones.
constexpr size_t kLongestPath = 319;

// A text begins with a summary if the store file has a state, which is its header's one byte.
bool has_summary(const Kind &kind) {
  return std::any_of(kind.store_header.begin(), kind.store_header.end(),
                     [](const Field &field) { return field.width == 1; });
}

std::string path_in(const std::string &directory, const Kind &kind) {
  return directory + '/' + fs::path(kind.store_path).filename().string();
}

// What a reader of the text must know of its file; empty if the file holds what it should.
std::string damage_of(const StoreFile &store) {
  std::string damage;
  if (store.announced().value_or(store.records()) != store.records())
    damage += fmt::format("; its header announces {}", *store.announced());
  if (store.left_over() > 0) damage += fmt::format("; the last {} bytes are no whole record", store.left_over());
  return damage;
}

std::string outcome_of(const StoreFile &store, bool has_text, const std::string &output_path) {
  if (!has_text) return "no records, nothing to write";
  std::error_code error;
  const uint64_t size = fs::file_size(output_path, error);
  if (error) throw Unreadable(fmt::format("cannot find the size of {}: {}", output_path, error.message()));
  return fmt::format("{} record{}, {} bytes in {}", store.records(), store.records() == 1 ? "" : "s", size,
                     output_path);
}

// Changes nothing, and tells how often a file is opened.
class CountedOpenings : public host::Redirection {
 public:
  CountedOpenings(std::string path, std::function<void(uint64_t)> on_opening)
      : path_(std::move(path)), on_opening_(std::move(on_opening)) {}

  std::optional<std::string> resolve(const char *, const std::string &path) override {
    if (path == path_) on_opening_(openings_++);
    return path;
  }
  void log(int, const std::string &) override {}  // decoders write no log

 private:
  std::string path_;
  std::function<void(uint64_t)> on_opening_;
  uint64_t openings_ = 0;
};

}  // namespace

uint64_t input_size(const std::string &input_dir, const Kind &kind) {
  std::error_code error;
  const uint64_t size = fs::file_size(path_in(input_dir, kind), error);
  return error ? 0 : size;
}

Decoding::Decoding(const std::string &plugin, const std::string &input_dir, const std::string &output_dir,
                   std::function<void(uint64_t)> on_progress)
    : plugin_(load_plugin(plugin)),
      input_dir_(input_dir),
      output_dir_(output_dir),
      on_progress_(std::move(on_progress)) {}

Decoded Decoding::decode(const Kind &kind) {
  const std::string input_path = path_in(input_dir_, kind);
  const std::string output_path = path_in(output_dir_, kind) + "_decoded.txt";
  if (std::max(input_path.size(), output_path.size()) > kLongestPath)
    return {DecodedAs::kFailed, fmt::format("paths longer than {} characters cannot be decoded", kLongestPath)};

  std::error_code ignored;
  fs::remove(output_path, ignored);  // whatever becomes of this run, nothing of an earlier one is left
  const fs::file_type type = fs::status(input_path, ignored).type();
  if (type == fs::file_type::not_found) return {DecodedAs::kNotFound, input_path + " is missing"};
  if (type != fs::file_type::regular && type != fs::file_type::none)
    return {DecodedAs::kFailed, input_path + " is not a file"};
  try {
    return write_text(kind, input_path, output_path);
  } catch (const std::runtime_error &reason) {
    return {DecodedAs::kFailed, reason.what()};
  }
}

Decoded Decoding::write_text(const Kind &kind, const std::string &input_path, const std::string &output_path) {
  StoreFile store(input_path, kind);
  if (!store.has_header()) throw Undecodable(fmt::format("{} ends within its header", input_path));
  run_decoder(kind, output_path);

  // Comparing is the second half of the work.
  const uint64_t size = store.records() * kind.record_size;
  const Compared compared =
      compare_text(output_path, has_summary(kind), store, plugin_.function<RecordPrinter>(std::string(kind.printer)),
                   [&](uint64_t records) { on_progress_((size + records * kind.record_size) / 2); });
  if (!compared.is_as_it_should_be) {
    refuse_if_unwritable(output_path);
    throw Undecodable(
        compared.records < store.records()
            ? fmt::format("only {} of {} records are in {}", compared.records, store.records(), output_path)
            : fmt::format("{} is not the text of its records", output_path));
  }

  const std::string damage = damage_of(store);
  const bool has_text = store.records() > 0 || has_summary(kind);
  return {damage.empty() ? DecodedAs::kWritten : DecodedAs::kWrittenOfDamaged,
          outcome_of(store, has_text, output_path) + damage};
}

// Where the kind echoes the path of the text for each record, it is not to stand between the lines of the report.
void Decoding::run_decoder(const Kind &kind, const std::string &output_path) {
  CountedOpenings openings(output_path, [&](uint64_t records) { on_progress_(records * kind.record_size / 2); });
  auto *const decoder = plugin_.function<Decoder>(std::string(kind.decoder));
  const Discarded echoes(stdout);
  const host::PluginScope scope(openings);
  decoder(input_dir_.c_str(), output_dir_.c_str());
}

}  // namespace mcstore
