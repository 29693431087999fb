// The kinds of devices as a race sees them: what the collector stores of each generation of the inventory, and what
// must be answered by one who has seen some of the generations.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/bytes.h"

namespace tests {

struct Device {
  size_t number;
  uint32_t stamp;
};

// Every record of a generation's files carries its number. Some devices come, go or change with each; the first one is
// always there and always changes, so that every answer but an empty one tells which generation it is of.
struct Generation {
  uint32_t number = 0;
  std::vector<Device> devices = {};

  int64_t modified() const { return 1'000'000 + int64_t{number}; }
};

// The same devices whenever it is asked; none in generation 0.
Generation generation(uint32_t number);

// What an answer must hold: devices of this generation, then those of an earlier one that are gone.
struct News {
  Generation now;
  Generation before;
  std::vector<Device> reported = {};
  std::vector<Device> gone = {};
};

struct Kind {
  const char *name;
  const char *full;  // the entry points
  const char *delta;
  const char *store;
  const char *lock;
  bool remembers_stamps;  // where it does not, a delta tells of every device
  bool tells_gone;
  size_t reply_header_size;
  size_t count_offset;   // of the records' number in a packed reply, or of its low byte
  size_t record_size;    // in a packed reply; 0 where the reply is XML
  const char *renderer;  // of its XML; null where the reply is packed
  uint8_t ready;         // the states of its subsystem
  uint8_t not_ready;
  Bytes (*file_header)(size_t devices, uint8_t state);
  Bytes (*stored)(const Device &device, uint32_t generation);
  // The answer that holds this, with what the plug-in leaves unwritten taken from the one that it gave.
  Bytes (*answer)(const News &news, const Bytes &given);
};

std::span<const Kind> kinds();
std::span<const Kind> raid_kinds();
std::span<const Kind> nvme_kinds();

inline std::string name_of(const testing::TestParamInfo<Kind> &kind) { return kind.param.name; }
inline void PrintTo(const Kind &kind, std::ostream *out) { *out << kind.name; }

Bytes store_file(const Kind &kind, const Generation &generation);
Bytes store_file(const Kind &kind, const Generation &generation, uint8_t state);

News everything(const Generation &now);
News difference(const Kind &kind, const Generation &before, const Generation &now);

// The generation that an answer says it is of.
uint32_t generation_in(const Bytes &answer);

}  // namespace tests
