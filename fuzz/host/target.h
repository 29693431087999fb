// The fuzz targets of the kinds differ in their files alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/host/fuzz_host.h"
#include "records/kind_facts.h"

namespace fuzz {

// What a target brings: the files of a kind, and what is called over them.
struct Target {
  const mcserver::records::KindFacts &facts;
  std::string empty_store;
  std::string (*store_file)(Choices &choices);
  const char *record_marker;  // switches on a dump; null for none
  const char *list_marker;
  const char *other_path;  // of another file that matters to the kind; null for none
  std::string (*other_file)(Choices &choices);
  const char *full;
  const char *delta;
  uint32_t buffer_step;  // buffers are up to 255 times as large
};

// A record's bytes, as a store file has them.
template <typename Record>
std::string bytes_of(const Record &record) {
  return {reinterpret_cast<const char *>(&record), sizeof record};
}

template <typename Record>
std::string record_filled_with(uint8_t byte) {
  return std::string(sizeof(Record), static_cast<char>(byte));
}

// A sequence of calls over store files of any content, with a host and a libc that fail at any point.
inline int fuzz_target(const Target &target, const uint8_t *data, size_t size) {
  static FuzzHost host(PLUGIN_PATH);
  Choices choices(data, size);
  const std::string lock = target.facts.lock_path;
  const std::string store = target.facts.store_path;  // may be the lock itself
  host.start_over();
  host.write(lock, "");
  host.write(store, target.empty_store);
  host.call(target.full, 65536, choices);  // nothing known
  while (!choices.exhausted()) {
    const uint8_t what = choices.byte();
    if (lock != store) host.write(lock, "");
    if (what & 1) host.write(store, target.store_file(choices));
    if (what & 2 && target.record_marker) host.write(target.record_marker, "");
    if (what & 4 && target.list_marker) host.write(target.list_marker, "");
    if (what & 8 && target.other_path) host.write(target.other_path, target.other_file(choices));
    if ((what & 0x30) == 0x30) host.remove(what & 1 ? lock : store);
    host.fail_one_in(what & 0x40 ? choices.byte() : 0, &choices);
    const uint32_t buffer_size = choices.byte() * target.buffer_step;
    host.call(what & 0x80 ? target.full : target.delta, buffer_size, choices);
  }
  return 0;
}

}  // namespace fuzz
