#include "mcstore/json/manifest.h"

#include <fmt/core.h>

#include <optional>

#include "mcstore/json/json_input.h"
#include "mcstore/json/json_writer.h"
#include "mcstore/kinds/unit.h"

namespace mcstore {
namespace {

constexpr uint64_t kManifestFormat = 1;
constexpr size_t kLongestText = 4096;
constexpr size_t kDigestLength = 64;

const Json &member(const Json &object, const char *name, const std::string &place) {
  const auto found = as_object(object, place).find(name);
  if (found == object.end()) refuse(member_of(place, name), "is missing");
  return *found;
}

std::string text_member(const Json &object, const char *name, size_t longest, const std::string &place) {
  return as_text(member(object, name, place), longest, member_of(place, name));
}

struct timespec time_member(const Json &object, const char *name, const std::string &place) {
  const auto time = parse_iso_time(text_member(object, name, kLongestText, place));
  if (!time) refuse(member_of(place, name), "must be a time such as 2026-03-02T10:00:00Z");
  return *time;
}

CapturedFile parse_file(const Json &json, const std::string &place) {
  return {
      .path = text_member(json, "path", kLongestText, place),
      .size = as_number(member(json, "size", place), 0, INT64_MAX, member_of(place, "size")),
      .modified = time_member(json, "modified", place),
      .sha256 = text_member(json, "sha256", kDigestLength, place),
  };
}

std::vector<CapturedFile> parse_files(const Json &json, const std::string &place) {
  std::vector<CapturedFile> files;
  for (const Json &file : as_array(json, place))
    files.push_back(parse_file(file, fmt::format("{}[{}]", place, files.size())));
  return files;
}

Manifest parse_document(const std::string &text) {
  const Json json = parse_json(text);
  as_object(json, "the manifest");
  const uint64_t format = as_number(member(json, "format", ""), 0, INT64_MAX, "format");
  if (format != kManifestFormat)
    refuse("format", fmt::format("{} is not known: this mcstore reads {}", format, kManifestFormat));
  return {
      .host = text_member(json, "host", kLongestText, ""),
      .version = text_member(member(json, "tool", ""), "version", kLongestText, "tool"),
      .time = time_member(json, "time", "").tv_sec,
      .files = parse_files(member(json, "files", ""), "files"),
  };
}

}  // namespace

std::string to_json(const Manifest &manifest) {
  std::string text;
  JsonWriter json(text, JsonWriter::Layout::kIndented);
  json.begin_object();
  json.key("format").number(kManifestFormat);
  json.key("host").text(manifest.host);
  json.key("tool").begin_object();
  json.key("name").text("mcstore");
  json.key("version").text(manifest.version);
  json.end_object();
  json.key("time").text(iso_time({.tv_sec = manifest.time, .tv_nsec = 0}));
  json.key("files").begin_array();
  for (const CapturedFile &file : manifest.files) {
    json.begin_object();
    json.key("path").text(file.path);
    json.key("size").number(file.size);
    json.key("modified").text(iso_time(file.modified));
    json.key("sha256").text(file.sha256);
    json.end_object();
  }
  json.end_array();
  json.end_object();
  return text + '\n';
}

Manifest parse_manifest(const std::string &text) {
  try {
    return parse_document(text);
  } catch (const InventoryError &error) {
    throw InvalidManifest(error.what());
  }
}

}  // namespace mcstore
