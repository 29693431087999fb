// What the fuzz targets of all kinds have in common: the fuzzer's bytes are a story of what the collector writes, what
// the machine does, and what the host calls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/host/fuzz_host.h"
#include "records/kind_facts.h"

namespace fuzz {

inline constexpr char kSimulation[] = "/debug/mctool_storage_debug";

// What a target brings: the files of a kind, and what is called over them.
struct Target {
  const mcserver::records::KindFacts &facts;
  size_t header_size = 0;  // of the store file
  size_t record_size;
  size_t stamp;                        // where a record has its time stamp
  std::vector<const char *> switches;  // files that switch something on, and those that are read beside the store
  host::EntryPoint *full;
  host::EntryPoint *delta;
  int32_t (*retrieve)(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len, int32_t delta);
  uint32_t simulated_beyond = 0;                   // so much does a simulation write beyond the buffer
  void (*help)(FuzzHost &host, Choices &choices);  // calls one of the kind's other functions
};

int run(const Target &target, const uint8_t *data, size_t size);

}  // namespace fuzz
