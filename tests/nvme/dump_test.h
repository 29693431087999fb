// The base of the tests of what a record is as text.
#pragma once

#include <string>
#include <vector>

#include "host/printed.h"
#include "nvme/nvme_test.h"

namespace tests {

class NvmeDumpTest : public PluginTest {
 protected:
  // The record alone, so that a read beyond it is seen.
  template <typename Record>
  std::string dump(const std::string &printer, const Bytes &record) {
    const std::vector<uint8_t> exactly(record.data(), record.data() + record.size());
    return printed([&](FILE *stream) {
      forget_calls();
      plugin(static_cast<void (*)(const Record *, FILE *)>(nullptr), printer)(
          reinterpret_cast<const Record *>(exactly.data()), stream);
      EXPECT_EQ(calls().back(), "fflush");
    });
  }
};

}  // namespace tests
