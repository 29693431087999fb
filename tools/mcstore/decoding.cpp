#include "mcstore/decoding.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <utility>

#include "mcstore/captured.h"
#include "mcstore/session.h"

namespace mcstore {
namespace {

namespace fs = std::filesystem;

using Decoder = int(const char *input_dir, const char *output_dir);

// The decoders cut longer ones.
constexpr size_t kLongestPath = 319;

uint64_t header_size(const Kind &kind) {
  uint64_t size = 0;
  for (const Field &field : kind.store_header) size += field.width;
  return size;
}

// A text begins with a summary if the store file has a state, which is its header's one byte.
bool has_summary(const Kind &kind) {
  return std::any_of(kind.store_header.begin(), kind.store_header.end(),
                     [](const Field &field) { return field.width == 1; });
}

std::string input_path(const std::string &input_dir, const Kind &kind) {
  return input_dir + '/' + fs::path(kind.store_path).filename().string();
}

// What a decoder prints to standard output when all goes well: for RAID, the path for each record.
std::string echoes(const Kind &kind, const std::string &output_path, uint64_t records) {
  std::string lines;
  for (uint64_t i = 0; kind.layout && i < records; ++i) lines += output_path + '\n';
  return lines;
}

std::string first_line(const std::string &text) { return text.substr(0, text.find('\n')); }

}  // namespace

uint64_t input_size(const std::string &input_dir, const Kind &kind) {
  std::error_code error;
  const uint64_t size = fs::file_size(input_path(input_dir, kind), error);
  return error ? 0 : size;
}

Decoding::Decoding(const std::string &plugin, const std::string &input_dir, const std::string &output_dir,
                   std::function<void(uint64_t)> on_record)
    : plugin_(load_plugin(plugin)), input_dir_(input_dir), output_dir_(output_dir), on_record_(std::move(on_record)) {}

std::string Decoding::output_path(const Kind &kind) const {
  return output_dir_ + '/' + fs::path(kind.store_path).filename().string() + "_decoded.txt";
}

Decoded Decoding::decode(const Kind &kind) {
  std::error_code ignored;
  const std::string input = input_path(input_dir_, kind);
  Work work{.kind = kind, .output_path = output_path(kind)};
  if (std::max(input.size(), work.output_path.size()) > kLongestPath)
    return {true, fmt::format("paths longer than {} characters cannot be decoded", kLongestPath)};
  fs::remove(work.output_path, ignored);  // an older text would pass for this file's
  const fs::file_type type = fs::status(input, ignored).type();
  if (type == fs::file_type::not_found) return {false, input + " is missing"};
  if (type != fs::file_type::regular && type != fs::file_type::none) return {true, input + " is not a file"};

  const uint64_t size = input_size(input_dir_, kind);
  Captured out(stdout);
  Captured err(stderr);
  work_ = &work;
  {
    const host::PluginScope scope(*this);
    plugin_.function<Decoder>(std::string(kind.decoder))(input_dir_.c_str(), output_dir_.c_str());
  }
  work_ = nullptr;
  return judge(work, size, out.text(), err.text());
}

// The decoder's result does not tell what was written.
Decoded Decoding::judge(const Work &work, uint64_t size, const std::string &out, const std::string &err) {
  const uint64_t size_of_records = size - std::min(size, header_size(work.kind));
  const uint64_t records = size_of_records / work.kind.record_size;
  const uint64_t written = work.openings - std::min<uint64_t>(work.openings, has_summary(work.kind) ? 1 : 0);

  if (!err.empty()) return {true, first_line(err)};
  if (work.close_error != 0)
    return {true, fmt::format("cannot write {}: {}", work.output_path, strerror(work.close_error))};
  const bool all_opened = out == echoes(work.kind, work.output_path, written);
  if (work.openings > 0 && !(all_opened && fs::is_regular_file(work.output_path)))
    return {true, "cannot write " + work.output_path};
  if (written < records) return {true, fmt::format("only {} of {} records can be read", written, records)};

  const uint64_t rest = size_of_records % work.kind.record_size;
  const std::string partial = rest > 0 ? fmt::format("; the last {} bytes are no whole record", rest) : "";
  if (work.openings == 0) return {false, "no records, nothing to write" + partial};
  return {false, fmt::format("{} record{}, {} bytes in {}{}", written, written == 1 ? "" : "s",
                             fs::file_size(work.output_path), work.output_path, partial)};
}

host::Verdict Decoding::before(const std::string &function, const std::string &detail) {
  if (function == "fopen" && detail == work_->output_path) {
    on_record_(work_->openings * work_->kind.record_size);
    ++work_->openings;
  }
  return {};
}

void Decoding::on_failed_close(int error) { work_->close_error = error; }

}  // namespace mcstore
