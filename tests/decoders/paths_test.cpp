#include <gtest/gtest.h>

#include <filesystem>

#include "decoders/decoder_test.h"

namespace tests {
namespace {

using testing::ValuesIn;

class LongPaths : public EveryDecoder {
 protected:
  // An existing directory in which a file of this name has a path of that length.
  std::string directory_for(const std::string &name, size_t length) {
    std::string path = "/d";
    while (path.size() + 1 + name.size() + 100 < length) path += "/" + std::string(90, 'd');
    path += "/" + std::string(length - path.size() - 2 - name.size(), 'd');
    std::filesystem::create_directories(files.real(path));
    return path;
  }
  std::string output_name() const { return std::string(GetParam().store) + "_decoded.txt"; }
};

TEST_P(LongPaths, OfTheInputFitUpToThreeHundredAndNineteenCharacters) {
  for (const size_t length : {318u, 319u}) {
    const std::string directory = directory_for(GetParam().store, length);
    files.write(directory + "/" + GetParam().store, GetParam().file_of(1));

    EXPECT_EQ(decode(GetParam(), directory.c_str()).err, "");

    EXPECT_EQ(text(GetParam()), GetParam().text_of(1)) << length;
  }
}

TEST_P(LongPaths, OfTheInputAreCutBehindThat) {
  const std::string directory = directory_for(GetParam().store, 320);
  const std::string cut = (directory + "/" + GetParam().store).substr(0, 319);
  files.write(directory + "/" + GetParam().store, GetParam().file_of(1));

  EXPECT_NE(decode(GetParam(), directory.c_str()).err.find("'" + cut + "': No such file"), std::string::npos);

  files.write(cut, GetParam().file_of(1));
  EXPECT_EQ(decode(GetParam(), directory.c_str()).err, "");
  EXPECT_EQ(text(GetParam()), GetParam().text_of(1));
}

TEST_P(LongPaths, OfTheTextFitUpToThreeHundredAndNineteenCharacters) {
  store(GetParam(), GetParam().file_of(1));
  for (const size_t length : {318u, 319u}) {
    const std::string directory = directory_for(output_name(), length);

    decode(GetParam(), "/in", directory.c_str());

    EXPECT_EQ(files.read(directory + "/" + output_name()), GetParam().text_of(1)) << length;
  }
}

TEST_P(LongPaths, OfTheTextAreCutBehindThat) {
  store(GetParam(), GetParam().file_of(1));
  const std::string directory = directory_for(output_name(), 320);
  files.write_text(directory + "/" + output_name(), "not touched");

  decode(GetParam(), "/in", directory.c_str());

  EXPECT_EQ(files.read((directory + "/" + output_name()).substr(0, 319)), GetParam().text_of(1));
  EXPECT_EQ(files.read(directory + "/" + output_name()), "not touched");
}

INSTANTIATE_TEST_SUITE_P(Kinds, LongPaths, ValuesIn(kDecoderKinds), name_of);

}  // namespace
}  // namespace tests
