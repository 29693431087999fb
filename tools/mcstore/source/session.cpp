#include "mcstore/source/session.h"

#include <fmt/core.h>

#include <filesystem>
#include <system_error>

#include "mcserver_storage.h"

namespace mcstore {
namespace {

// Beside the program (a build tree), in the library directory that it was installed with, wherever that has been moved
// to, or where the dynamic loader looks.
std::string find_plugin() {
  std::error_code failure;  // a root without /proc
  const std::filesystem::path here = std::filesystem::read_symlink("/proc/self/exe", failure).parent_path();
  if (failure) return PLUGIN_NAME;
  for (const std::filesystem::path &candidate : {here / PLUGIN_NAME, here / PLUGIN_DIRECTORY / PLUGIN_NAME})
    if (std::filesystem::exists(candidate)) return candidate.string();
  return PLUGIN_NAME;
}

const char *meaning(int32_t status) {
  switch (status) {
    case MC_STORE_REPLY_TOO_LARGE:
      return "the reply does not fit into the largest buffer that this host grants";
    case MC_STORE_UNAVAILABLE:
      return "a store file cannot be opened or locked, or memory is short";
    case MC_STORE_NO_DATA:
      return "no data: a store file is missing, or its header cannot be read";
    case MC_STORE_NO_BUFFER:
      return "no memory for the XML, or it does not fit into the largest buffer that this host grants";
    case MC_STORE_NO_IMAGE:
      return "no memory for the records";
    default:
      return "a status without a known meaning";
  }
}

}  // namespace

// A name without a slash would be looked for where the dynamic loader looks, instead of here.
host::Plugin load_plugin(const std::string &path) {
  return host::Plugin(path.empty() ? find_plugin() : std::filesystem::absolute(path).string());
}

PluginFailure::PluginFailure(std::string_view entry_point, int32_t status)
    : std::runtime_error(fmt::format("{} returned {}: {}", entry_point, status, meaning(status))), status_(status) {}

Session::Session(const SessionOptions &options, Place &place)
    : place_(place), plugin_(load_plugin(options.plugin)), memory_(options.buffer_size) {
  mc_debug_level = options.trace_level;
  outfp = trace_.stream();
}

Record Session::call(std::string_view entry_point) {
  auto *const function = plugin_.function<host::EntryPoint>(std::string(entry_point));
  memory_.clear();
  uint32_t length = 0;
  int32_t status;
  {
    const host::PluginScope scope(place_);
    status = function(static_cast<host::ReplyOwner *>(&memory_), memory_.bytes(), memory_.size(), &length);
  }
  if (status != MC_STORE_SUCCESS) throw PluginFailure(entry_point, status);
  return {memory_.bytes(), length};
}

}  // namespace mcstore
