// The lists in which controllers, virtual drives and BBUs are remembered. They are made alike: by two calls of realloc,
// the first for the cur list, the second for the cached list, of as many entries as the file has records.
// Physical drives go another way.
#pragma once

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "host/plugin_test.h"

namespace tests {

// One of a kind's devices, which differ in all that names them: as it was at first, or modified.
struct Device {
  Device(int number_)
      : number(static_cast<size_t>(number_)) {}  // implicit, so that a list of them is a list of numbers

  size_t number;
  bool is_modified = false;
};

inline Device modified(int number) {
  Device device = number;
  device.is_modified = true;
  return device;
}

inline std::vector<Device> devices_below(int count) {
  std::vector<Device> devices;
  for (int number = 0; number < count; ++number) devices.push_back(number);
  return devices;
}

// What the tests must know of a kind.
struct ListedKind {
  const char *full;   // the entry points
  const char *delta;  //
  const char *store;
  Bytes file_header;                        // what stands in front of the file's records
  Bytes (*stored)(const Device &device);    // a record in the file
  Bytes (*reported)(const Device &device);  // the same in a reply
  Bytes (*reply_header)(uint8_t count);
  Bytes quiet_delta;        // the answer when there are no news
  const char *last_call;    // of libc before the lists are made,
  int last_call_number;     // and which one of its name it is
  std::string no_cur_list;  // what is traced without memory for it
  std::string no_cached_list;
};

// Each room has its own.
extern const ListedKind kListedKind;

inline constexpr int kCur = 1;
inline constexpr int kCached = 2;

class ListTest : public PluginTest {
 protected:
  // The collector's lock file is there whatever kinds of device there are.
  ListTest() { files.write("/var/storctlr_info", Bytes().u8(2)); }

  void store(const std::vector<Device> &devices, int64_t time = 1000) {
    Bytes file = kListedKind.file_header;
    for (const Device &device : devices) file += kListedKind.stored(device);
    files.write(kListedKind.store, file, time);
  }

  Reply full(const CallOptions &options = {}) { return call(kListedKind.full, options); }
  Reply delta(const CallOptions &options = {}) { return call(kListedKind.delta, options); }

  // What a full call leaves, at 1000 seconds.
  void remember(const std::vector<Device> &devices) {
    store(devices);
    ASSERT_EQ(full().status, 0);
    forget_calls();
  }

  static Bytes reply_of(const std::vector<Device> &devices) {
    Bytes reply = kListedKind.reply_header(static_cast<uint8_t>(devices.size()));
    for (const Device &device : devices) reply += kListedKind.reported(device);
    return reply;
  }

  // That list is not made, while the calls for both say this.
  void lose(int list, host::Verdict verdict) { inject("realloc", list, verdict); }

  // A delta call for more devices than the lists have room for, while memory is short.
  Reply grow_in_vain(int list, host::Verdict verdict) {
    store(devices_below(4), 2000);
    lose(list, verdict);
    return delta();
  }

  auto number_of_calls(const std::string &libc_call) const { return std::ranges::count(calls(), libc_call); }
  auto allocations() const { return number_of_calls("realloc"); }
};

inline constexpr host::Verdict kNullAndNoMemory = {.fails = true, .error = ENOMEM};
inline constexpr host::Verdict kABlockAndNoMemory = {.fails = false, .error = ENOMEM};
// This is no failure, and what follows copes with it.
inline constexpr host::Verdict kNullAndNoError = {.fails = true, .error = 0};

// ------------------------------------------------------------------------------------------------------- no memory

struct Shortage {
  int list;
  host::Verdict verdict;

  const std::string &trace() const { return list == kCur ? kListedKind.no_cur_list : kListedKind.no_cached_list; }
};

inline void PrintTo(const Shortage &shortage, std::ostream *out) {
  *out << (shortage.list == kCur ? "cur list, " : "cached list, ") << (shortage.verdict.fails ? "null" : "a block");
}

class NoMemory : public ListTest, public testing::WithParamInterface<Shortage> {
 protected:
  Reply grow_in_vain() { return ListTest::grow_in_vain(GetParam().list, GetParam().verdict); }
};

// For one of the lists, which is null or, though errno says that there is no memory, a block.
class NoMemoryFor : public ListTest, public testing::WithParamInterface<bool> {
 protected:
  static host::Verdict verdict() { return GetParam() ? kABlockAndNoMemory : kNullAndNoMemory; }
};

inline auto every_shortage() {
  return testing::Values(Shortage{kCur, kNullAndNoMemory}, Shortage{kCur, kABlockAndNoMemory},
                         Shortage{kCached, kNullAndNoMemory}, Shortage{kCached, kABlockAndNoMemory});
}

// ----------------------------------------------------------------------------------------- null, and nothing is wrong

class NullList : public ListTest, public testing::WithParamInterface<int> {
 protected:
  using ListTest::lose;
  void lose() { lose(GetParam(), kNullAndNoError); }
};

}  // namespace tests
