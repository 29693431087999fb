// The fuzz targets of the RAID kinds differ in their files alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/host/fuzz_host.h"

namespace fuzz {

struct RaidKind {
  const char *store;
  std::string empty_store;
  std::string (*store_file)(Choices &choices);
  const char *list_marker;
  const char *other_path;  // of another file that matters to the kind; null for none
  std::string (*other_file)(Choices &choices);
  const char *full;
  const char *delta;
  uint32_t buffer_step;  // buffers are up to 255 times as large
};

// A sequence of calls over store files of any content, with a host and a libc that fail at any point.
inline int fuzz_raid_kind(const RaidKind &kind, const uint8_t *data, size_t size) {
  static FuzzHost host(PLUGIN_PATH);
  Choices choices(data, size);
  host.start_over();
  host.write("/var/storctlr_info", "");
  host.write(kind.store, kind.empty_store);
  host.call(kind.full, 65536, choices);  // nothing known
  while (!choices.exhausted()) {
    const uint8_t what = choices.byte();
    if (what & 1) host.write(kind.store, kind.store_file(choices));
    if (what & 2) host.write("/var/mctool_stordebug", "");
    if (what & 4) host.write(kind.list_marker, "");
    if (what & 8 && kind.other_path) host.write(kind.other_path, kind.other_file(choices));
    if ((what & 0x30) == 0x30) host.remove(kind.store);
    host.fail_one_in(what & 0x40 ? choices.byte() : 0, &choices);
    const uint32_t buffer_size = choices.byte() * kind.buffer_step;
    host.call(what & 0x80 ? kind.full : kind.delta, buffer_size, choices);
  }
  return 0;
}

}  // namespace fuzz
