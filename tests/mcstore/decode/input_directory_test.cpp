#include <gmock/gmock.h>

#include <filesystem>

#include "decoders/decoder_kinds.h"
#include "mcstore/command_line.h"

namespace tests {
namespace {

using testing::StartsWith;

class DecodeFrom : public McstoreTest {
 protected:
  Outcome decode_from(const std::string &directory) {
    return mcstore("decode " + files.real(directory) + " " + files.real("/out"));
  }
  void store_bbu(const std::string &directory) {
    files.write(directory + '/' + kBbusDecoder.store, kBbusDecoder.file_of(1));
  }
};

TEST_F(DecodeFrom, TheDirectoryOfTheFiles) {
  store_bbu("/copies");

  EXPECT_EQ(decode_from("/copies").exit_code, 0);

  EXPECT_TRUE(files.exists("/out/storBBU_info_decoded.txt"));
}

TEST_F(DecodeFrom, TheDirectoryAboveVar) {
  store_bbu("/server/var");

  EXPECT_EQ(decode_from("/server").exit_code, 0);

  EXPECT_TRUE(files.exists("/out/storBBU_info_decoded.txt"));
}

TEST_F(DecodeFrom, ADirectoryWithFilesGoesBeforeVarInIt) {
  store_bbu("/server");
  files.write("/server/var/storBBU_info", kBbusDecoder.file_of(2));

  EXPECT_EQ(decode_from("/server").exit_code, 0);

  EXPECT_EQ(files.read("/out/storBBU_info_decoded.txt"), kBbusDecoder.text_of(1));
}

TEST_F(DecodeFrom, ADirectoryWithoutFilesFails) {
  std::filesystem::create_directory(files.real("/empty"));

  const Outcome outcome = decode_from("/empty");

  EXPECT_THAT(outcome.out, StartsWith("controllers: " + files.real("/empty/storctlr_info") + " is missing\n"));
  EXPECT_EQ(outcome.err, "mcstore: nothing was decoded from " + files.real("/empty") + "\n");
  EXPECT_EQ(outcome.exit_code, 1);
}

}  // namespace
}  // namespace tests
