#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "mcstore/command_line.h"
#include "mcstore/kinds/kind.h"
#include "mcstore/kinds/value.h"

namespace tests {
namespace {

using mcserver::FieldType;
using mcstore::Field;
using mcstore::Kind;

// Makes store files of any bytes, as no collector would, among them all that JSON does not show by itself.
class RandomStores {
 public:
  explicit RandomStores(unsigned seed) : engine_(seed) {}

  Bytes file_of(const Kind &kind) {
    const uint32_t count = below(5);
    std::vector<uint8_t> file(mcstore::total_width(kind.store_header));
    for (uint8_t &byte : file) byte = any_byte();
    if (kind.stored_count) put(count, *kind.stored_count, file);
    for (uint32_t i = 0; i < count; ++i) {
      const std::vector<uint8_t> record = record_of(kind);
      file.insert(file.end(), record.begin(), record.end());
    }
    return Bytes(file);
  }

 private:
  uint32_t below(uint32_t limit) { return static_cast<uint32_t>(engine_() % limit); }
  uint8_t any_byte() { return static_cast<uint8_t>(engine_()); }

  static void put(uint64_t number, const Field &field, std::vector<uint8_t> &bytes) {
    for (size_t i = 0; i < field.width; ++i) bytes[field.offset + i] = static_cast<uint8_t>(number >> (8 * i));
  }

  std::vector<uint8_t> record_of(const Kind &kind) {
    std::vector<uint8_t> record(kind.record_size);
    for (uint8_t &byte : record) byte = any_byte();
    for (const Field &field : mcstore::fields_of(kind, record)) fill(field, record);
    return record;
  }

  void fill(const Field &field, std::vector<uint8_t> &record) {
    if (field.type == FieldType::kText) return fill_text(field, record);
    const auto &none = field.meaning.none;
    const auto choices = static_cast<uint32_t>(none.end() - none.begin()) + 2;
    const uint32_t choice = below(choices);
    if (choice == 0) std::fill_n(record.begin() + static_cast<std::ptrdiff_t>(field.offset), field.width, uint8_t{0});
    if (choice >= 2) put(static_cast<uint64_t>(none.begin()[choice - 2]), field, record);
  }

  // Empty, with bytes behind its NUL, filling its field, in UTF-8, beginning like the words that others depend on, or
  // left as it is: random.
  void fill_text(const Field &field, std::vector<uint8_t> &record) {
    const std::array<std::string, 6> texts = {
        "", "text", std::string(field.width, 'x'), "\u00e9\"\\<&\n\u2028", "NVME-MSWITCH", "\xff\xfe"};
    const uint32_t choice = below(2 * texts.size());
    if (choice >= texts.size()) return;
    const std::string text = texts[choice].substr(0, field.width);
    const bool is_padded = below(2) == 0;
    for (size_t i = 0; i < field.width; ++i)
      if (i < text.size() + 1 || is_padded)
        record[field.offset + i] = i < text.size() ? static_cast<uint8_t>(text[i]) : uint8_t{0};
  }

  std::mt19937 engine_;
};

class RoundTripOfOne : public McstoreTest {
 protected:
  void copy_through_json() {
    const Outcome outcome =
        run("bash -c 'set -o pipefail; " + mcstore_command() + " get all --format json --root " + files.real("") +
            " | " + mcstore_command() + " collect - --root " + copy.real("") + "'");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.exit_code, 0);
  }

  void expect_same_files() const {
    for (const Kind &kind : mcstore::kinds()) {
      const std::string path(kind.store_path);
      if (path.empty()) continue;
      EXPECT_EQ(files.exists(path), copy.exists(path)) << path;
      EXPECT_TRUE(files.read(path) == copy.read(path)) << path;
    }
  }

  StoreDirectory copy;
};

class RoundTrip : public RoundTripOfOne, public testing::WithParamInterface<unsigned> {};

TEST_P(RoundTrip, GivesTheSameFilesAgain) {
  RandomStores stores(GetParam());
  for (const Kind &kind : mcstore::kinds())
    if (!kind.store_path.empty()) files.write(std::string(kind.store_path), stores.file_of(kind));

  copy_through_json();

  expect_same_files();
}

INSTANTIATE_TEST_SUITE_P(OfRandomStores, RoundTrip, testing::Range(0u, 16u));

TEST_F(RoundTripOfOne, KeepsWhatTheFlashModuleCompletes) {
  ASSERT_EQ(mcstore_here("collect " PROJECT_DIRECTORY "/docs/examples/inventory.json").exit_code, 0);
  const Outcome shown = mcstore_here("get bbus --format json");
  ASSERT_NE(shown.out.find("\"tfm_vendor_hex\": \"00"), std::string::npos) << shown.out;

  copy_through_json();

  expect_same_files();
}

TEST_F(RoundTripOfOne, LeavesOutTheKindsThatAreNotThere) {
  files.write("/var/storctlr_info", Bytes::hex("02"));

  copy_through_json();

  EXPECT_TRUE(copy.exists("/var/storctlr_info"));
  expect_same_files();
}

}  // namespace
}  // namespace tests
