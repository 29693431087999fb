#include "fuzz/host/plugin_state.h"

#include <dlfcn.h>
#include <link.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string_view>

#include "fuzz/host/require.h"

namespace fuzz {
namespace {

template <typename Header>
Header header_at(const std::string &file, size_t offset) {
  Header header;
  memcpy(&header, file.substr(offset, sizeof header).data(), sizeof header);
  return header;
}

// The sanitizers guard the room between variables, but not from libc's own memcpy.
void copy_past_sanitizers(void *to, const void *from, size_t size) {
  static auto *const copy = reinterpret_cast<decltype(&memcpy)>(dlsym(RTLD_NEXT, "memcpy"));
  copy(to, from, size);
}

Dl_info object_with(const void *place) {
  Dl_info object;
  require(dladdr(place, &object) != 0);
  return object;
}

Dl_info plugin() { return object_with(dlsym(RTLD_DEFAULT, "verify_version")); }

// Those two sections have all variables of the program text. The counters of sanitizers and of coverage have sections
// of their own.
std::vector<std::span<char>> variables_of_plugin() {
  std::ifstream stream(plugin().dli_fname, std::ios::binary);
  const std::string file(std::istreambuf_iterator<char>(stream), {});

  std::vector<std::span<char>> variables;
  const auto header = header_at<ElfW(Ehdr)>(file, 0);
  const auto section = [&](size_t number) {
    return header_at<ElfW(Shdr)>(file, header.e_shoff + number * header.e_shentsize);
  };
  const char *const names = file.data() + section(header.e_shstrndx).sh_offset;
  for (size_t number = 0; number < header.e_shnum; ++number) {
    const auto about = section(number);
    const std::string_view name = names + about.sh_name;
    if (name == ".data" || name == ".bss")
      variables.emplace_back(static_cast<char *>(plugin().dli_fbase) + about.sh_addr, about.sh_size);
  }
  require(variables.size() == 2);
  return variables;
}

}  // namespace

PluginState::PluginState() : base_(plugin().dli_fbase), variables_(variables_of_plugin()) {
  for (const std::span<char> section : variables_)
    copy_past_sanitizers(initial_.emplace_back(section.size(), '\0').data(), section.data(), section.size());
}

void PluginState::restore() const {
  for (size_t i = 0; i < variables_.size(); ++i)
    copy_past_sanitizers(variables_[i].data(), initial_[i].data(), initial_[i].size());
}

[[clang::no_sanitize("address")]] bool PluginState::points_to(const void *block) const {
  for (const std::span<char> section : variables_) {
    const auto *const words = reinterpret_cast<const void *const *>(section.data());
    for (size_t word = 0; word < section.size() / sizeof *words; ++word)
      if (words[word] == block) return true;
  }
  return false;
}

bool PluginState::has_code(const void *place) const { return object_with(place).dli_fbase == base_; }

}  // namespace fuzz
