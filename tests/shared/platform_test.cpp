#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "host/plugin_test.h"

namespace tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Values;

constexpr char kProductFile[] = "/etc/product";
constexpr char kCannotOpen[] = "<read_product_file: 180> [read_product_file]fopen(/etc/product) failed: errno ";
constexpr char kNoKestrano[] =
    "<running_on_kestrano: 203> [running_on_kestrano]fscanf on product file gave unexpected value ";
constexpr char kNoMorvik[] =
    "<running_on_morvik: 224> [running_on_morvik]fscanf on product file gave unexpected value ";
constexpr char kMissing[] = "2 (No such file or directory)";

class Platform : public PluginTest {
 protected:
  void product(const std::string &text) { files.write_text(kProductFile, text); }

  int read_word(char *word) { return PLUGIN(read_product_file)(word); }
  int on_kestrano() { return PLUGIN(running_on_kestrano)(); }
  int on_morvik() { return PLUGIN(running_on_morvik)(); }
};

// A buffer for a word, and a few bytes behind it that are not the plug-in's.
class ProductWord : public Platform {
 protected:
  int read() {
    memset(word_, kUntouched, sizeof word_);
    return read_word(word_);
  }
  Bytes word(size_t size) const { return Bytes(std::vector<uint8_t>(word_, word_ + size)); }
  Bytes behind(size_t size) const { return Bytes(std::vector<uint8_t>(word_ + size, word_ + sizeof word_)); }

  char word_[80];
};

TEST_F(ProductWord, IsTheFirstOfTheFile) {
  product(" \n\tKestrano-X 2\nrack\n");

  const int converted = read();

  EXPECT_EQ(converted, 1);
  EXPECT_EQ(word(11), Bytes().text("Kestrano-X", 11));
  EXPECT_THAT(calls(), ElementsAre("fopen /etc/product", "fscanf", "fclose"));
}

TEST_F(ProductWord, NeedsNoNewlineBehindIt) {
  product("tarnika");

  const int converted = read();

  EXPECT_EQ(converted, 1);
  EXPECT_EQ(word(8), Bytes().text("tarnika", 8));
}

TEST_F(ProductWord, IsCutAfterSixtyThreeCharacters) {
  product(std::string(63, 'w') + "xyz\n");

  const int converted = read();

  EXPECT_EQ(converted, 1);
  EXPECT_EQ(word(64), Bytes().text(std::string(63, 'w'), 64));
  EXPECT_EQ(behind(64), Bytes::repeated(16, kUntouched));
}

TEST_F(ProductWord, IsReadAnewEveryTime) {
  product("tarnika\n");
  read();
  product("morvik\n");

  read();

  EXPECT_EQ(word(7), Bytes().text("morvik", 7));
}

TEST_F(ProductWord, IsMissingWithTheFile) {
  trace_at(3);

  const int converted = read();

  EXPECT_EQ(converted, 0);
  EXPECT_EQ(behind(0), Bytes::repeated(80, kUntouched));
  EXPECT_EQ(trace(), std::string(kCannotOpen) + kMissing);
  EXPECT_THAT(calls(), ElementsAre("fopen /etc/product", "fprintf", "fflush"));
}

TEST_F(ProductWord, IsMissingWhenTheFileCannotBeOpened) {
  product("morvik\n");
  trace_at(3);
  fail("fopen", 1, EACCES);

  const int converted = read();

  EXPECT_EQ(converted, 0);
  EXPECT_EQ(trace(), std::string(kCannotOpen) + "13 (Permission denied)");
}

class NoProductWord : public ProductWord, public testing::WithParamInterface<const char *> {};

TEST_P(NoProductWord, EndsTheFileAndLeavesNoTrace) {
  product(GetParam());
  trace_at(9);

  const int converted = read();

  EXPECT_EQ(converted, EOF);
  EXPECT_EQ(trace(), "");
  EXPECT_THAT(calls(), ElementsAre("fopen /etc/product", "fscanf", "fclose"));
}

INSTANTIATE_TEST_SUITE_P(, NoProductWord, Values("", "\n", " \t\n \n"));

TEST_F(ProductWord, ThatCannotBeReadIsTheScansResult) {
  product("morvik\n");
  fail("fscanf", 1, EIO);

  const int converted = read();

  EXPECT_EQ(converted, EOF);
  EXPECT_THAT(calls(), ElementsAre("fopen /etc/product", "fscanf", "fclose"));
}

TEST_F(ProductWord, IsNotReadWithoutABuffer) {
  product("morvik\n");

  const int converted = read_word(nullptr);

  EXPECT_EQ(converted, 0);
  EXPECT_THAT(calls(), Not(Contains("fscanf")));
}

// ------------------------------------------------------------------------------------------------------ predicates

struct Product {
  const char *text;
  int is_kestrano;
  int is_morvik;
};

void PrintTo(const Product &product, std::ostream *out) { *out << '"' << product.text << '"'; }

class PlatformNamed : public Platform, public testing::WithParamInterface<Product> {};

TEST_P(PlatformNamed, IsRecognizedByThePrefix) {
  product(GetParam().text);
  trace_at(9);

  const int kestrano = on_kestrano();
  const int morvik = on_morvik();

  EXPECT_EQ(kestrano, GetParam().is_kestrano);
  EXPECT_EQ(morvik, GetParam().is_morvik);
  EXPECT_EQ(trace(), "");
}

INSTANTIATE_TEST_SUITE_P(, PlatformNamed,
                         Values(Product{"kestrano\n", 1, 0}, Product{"kestrano", 1, 0}, Product{"KESTRANO\n", 1, 0},
                                Product{"KESTRANO-9000\n", 1, 0}, Product{"kEsTrAnOx tarnika\n", 1, 0},
                                Product{"morvik\n", 0, 1}, Product{"MORVIK-9000\n", 0, 1}, Product{"MorVik2", 0, 1},
                                Product{"kestran\n", 0, 0}, Product{"kestran o\n", 0, 0}, Product{"kestranx\n", 0, 0},
                                Product{"morvi\n", 0, 0}, Product{"morvix\n", 0, 0}, Product{"xkestrano\n", 0, 0},
                                Product{"xmorvik\n", 0, 0}, Product{"tarnika kestrano morvik\n", 0, 0},
                                Product{"tarnika\nmorvik\n", 0, 0}));

TEST_F(Platform, IsReadByEachPredicateOnItsOwn) {
  product("kestrano\n");
  on_kestrano();
  product("morvik\n");

  const int morvik = on_morvik();

  EXPECT_EQ(morvik, 1);
  EXPECT_THAT(calls(), ElementsAre("fopen /etc/product", "fscanf", "fclose", "fopen /etc/product", "fscanf", "fclose"));
}

TEST_F(Platform, IsNotReadAgainOnceItIsRecognized) {
  product("kestrano\n");
  on_kestrano();
  product("morvik\n");
  forget_calls();

  const int kestrano = on_kestrano();

  EXPECT_EQ(kestrano, 1);
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(Platform, IsNotReadAgainOnceItIsAnother) {
  product("tarnika\n");
  on_morvik();
  product("morvik\n");
  forget_calls();

  const int morvik = on_morvik();

  EXPECT_EQ(morvik, 0);
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(Platform, IsNeitherReadNorTracedAgainWhenThereWasNoFile) {
  trace_at(3);

  const int kestrano = on_kestrano();
  const int morvik = on_morvik();

  EXPECT_EQ(kestrano, 0);
  EXPECT_EQ(morvik, 0);
  EXPECT_EQ(trace(), std::string(kCannotOpen) + kMissing + kNoKestrano + "0: " + kMissing + kCannotOpen + kMissing +
                         kNoMorvik + "0: " + kMissing);

  product("kestrano\n");
  forget_calls();

  EXPECT_EQ(on_kestrano(), 0);
  EXPECT_EQ(on_morvik(), 0);
  EXPECT_THAT(calls(), IsEmpty());
  EXPECT_EQ(trace(), "");
}

TEST_F(Platform, IsReadAgainInANewLife) {
  product("tarnika\n");
  on_kestrano();
  on_morvik();
  product("kestrano\n");

  unload();
  load();

  EXPECT_EQ(on_kestrano(), 1);
  EXPECT_EQ(on_morvik(), 0);
}

// A call from within the reading would otherwise read, too, and so on.
TEST_F(Platform, CountsAsReadBeforeItIs) {
  product("kestrano\n");
  int within = -1;
  before_call("fopen", 1, [&] { within = on_kestrano(); });

  const int kestrano = on_kestrano();

  EXPECT_EQ(within, 0);
  EXPECT_EQ(kestrano, 1);
}

TEST_F(Platform, IsUnknownWhileTheFileIsEmpty) {
  product("");
  trace_at(3);
  errno = 0;

  const int kestrano = on_kestrano();

  EXPECT_EQ(kestrano, 0);
  EXPECT_EQ(trace(), std::string(kNoKestrano) + "-1: 0 (Success)");
}

// Whatever left it behind.
TEST_F(Platform, IsUnknownWithErrnoAsItStands) {
  product("");
  trace_at(3);
  inject("fscanf", 1, {.fails = false, .error = EXDEV});

  const int morvik = on_morvik();

  EXPECT_EQ(morvik, 0);
  EXPECT_EQ(trace(), std::string(kNoMorvik) + "-1: 18 (Invalid cross-device link)");
}

TEST_F(Platform, IsUnknownWhenTheFileCannotBeRead) {
  product("kestrano\n");
  trace_at(3);
  fail("fscanf", 1, EIO);

  const int kestrano = on_kestrano();

  EXPECT_EQ(kestrano, 0);
  EXPECT_EQ(trace(), std::string(kNoKestrano) + "-1: 5 (Input/output error)");
}

TEST_F(Platform, IsUnknownWhenTheFileCannotBeOpened) {
  product("morvik\n");
  trace_at(3);
  fail("fopen", 1, EACCES);

  const int morvik = on_morvik();

  EXPECT_EQ(morvik, 0);
  EXPECT_EQ(trace(), std::string(kCannotOpen) + "13 (Permission denied)" + kNoMorvik + "0: 13 (Permission denied)");
}

}  // namespace
}  // namespace tests
