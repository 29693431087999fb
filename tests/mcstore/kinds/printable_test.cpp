#include "mcstore/kinds/printable.h"

#include <gtest/gtest.h>

#include "mcstore/inventories.h"
#include "mcstore/kinds/nearest.h"
#include "mcstore/kinds/utf8.h"

namespace tests {
namespace {

using mcstore::printable;

TEST(Printable, LeavesPlainTextAsItIs) { EXPECT_EQ(printable("A b~\\x"), "A b~\\x"); }

TEST(Printable, EscapesControlCharacters) {
  for (const char *locale : {"C", "C.UTF-8"}) {
    const InLocale scope(locale);

    EXPECT_EQ(printable("\x1b[2J\a\r\n\t\x7f"), "\\x1b[2J\\x07\\x0d\\x0a\\x09\\x7f") << locale;
    EXPECT_EQ(printable(std::string_view("a\0b", 3)), "a\\x00b") << locale;
  }
}

TEST(Printable, ShowsCharactersThatTheLocaleHas) {
  EXPECT_EQ(printable("\xc3\xa9"), "\\xc3\\xa9");
  const InLocale scope("C.UTF-8");
  EXPECT_EQ(printable("\xc3\xa9\xe6\xbc\xa2"), "\xc3\xa9\xe6\xbc\xa2");
}

TEST(Printable, EscapesWhatIsNoCharacter) {
  const InLocale scope("C.UTF-8");

  EXPECT_EQ(printable("\xff"), "\\xff");
  EXPECT_EQ(printable("\xc3"), "\\xc3");                    // cut
  EXPECT_EQ(printable("\xc0\xaf"), "\\xc0\\xaf");           // longer than it need be
  EXPECT_EQ(printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");  // a surrogate
  EXPECT_EQ(printable("\xc2\x9b\x32\x4a"),
            "\\xc2\\x9b"
            "2J");  // a control character of the upper half
}

TEST(Printable, EscapesWhatDeceivesItsReader) {
  const InLocale scope("C.UTF-8");

  EXPECT_EQ(printable("\xe2\x80\xae"), "\\xe2\\x80\\xae");  // from right to left
  EXPECT_EQ(printable("\xe2\x81\xa6"), "\\xe2\\x81\\xa6");  // isolated
  EXPECT_EQ(printable("\xe2\x80\x8b"), "\\xe2\\x80\\x8b");  // without any width
  EXPECT_EQ(printable("\xef\xbb\xbf"), "\\xef\\xbb\\xbf");
}

TEST(Printable, EscapesWhatIsNotSeen) {
  const InLocale scope("C.UTF-8");

  for (const char *text : {"\u00ad", "\u034f", "\u115f", "\u1160", "\u17b4", "\u17b5", "\u180b", "\u180f", "\u2800",
                           "\u3164", "\ufe00", "\ufe0f", "\uffa0", "\U000e0041", "\U0010fffd"})
    EXPECT_TRUE(printable(text).starts_with("\\x")) << printable(text);
  for (const char *text : {"\u034e", "\u115e", "\u1161", "\u17b6", "\u2801", "\u3163", "\u3165", "\ufe10", "\uffa1"})
    EXPECT_EQ(printable(text), text);
}

TEST(Utf8, HasCharactersOfUpToFourBytes) {
  const auto code = [](std::string_view text) { return mcstore::first_character(text).code; };

  EXPECT_EQ(code("A"), U'A');
  EXPECT_EQ(code("\xc3\xa9x"), U'\u00e9');
  EXPECT_EQ(code("\xe2\x80\xae"), U'\u202e');
  EXPECT_EQ(code("\xf0\x9f\x98\x80"), U'\U0001F600');
  EXPECT_EQ(mcstore::first_character("\xf0\x9f\x98\x80").length, 4u);
}

TEST(Utf8, RefusesWhatIsNone) {
  for (const char *text : {"\x80", "\xff", "\xc3", "\xc3(", "\xc0\xaf", "\xe0\x80\xaf", "\xed\xa0\x80",
                           "\xf4\x90\x80\x80", "\xf0\x80\x80\xaf"}) {
    EXPECT_EQ(mcstore::first_character(text).code, std::nullopt);
    EXPECT_EQ(mcstore::first_character(text).length, 1u);
  }
}

TEST(Nearest, NamesTheWordsThatAreMostAlike) {
  const std::vector<std::string> words = {"drives", "bbus", "controllers", "TEMP", "TYPE"};

  EXPECT_EQ(mcstore::nearest("drive", words), "drives");
  EXPECT_EQ(mcstore::nearest("tem", words), "TEMP");
  EXPECT_EQ(mcstore::nearest("tempe", words), "TEMP");
  EXPECT_EQ(mcstore::nearest("x", std::vector<std::string>{}), "");
}

TEST(Nearest, NamesAtMostThree) {
  EXPECT_EQ(mcstore::nearest("s", std::vector<std::string>{"s1", "s2", "s3", "s4"}), "s1, s2, s3");
}

}  // namespace
}  // namespace tests
