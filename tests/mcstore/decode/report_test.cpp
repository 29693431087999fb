#include <gmock/gmock.h>

#include "decoders/decoder_kinds.h"
#include "mcstore/command_line.h"

namespace tests {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class DecodeReport : public McstoreTest {
 protected:
  Outcome decode(const std::string &kinds) {
    return mcstore("decode " + files.real("/in") + " " + files.real("/out") + " " + kinds);
  }
  void store(const DecoderKind &kind, const Bytes &content) { files.write(std::string("/in/") + kind.store, content); }
};

TEST_F(DecodeReport, TellsWhatAHeaderAnnouncesInVain) {
  store(kDrivesDecoder, kDrivesDecoder.file_of(2).put(0, Bytes().u32(9)));

  const Outcome outcome = decode("drives");

  EXPECT_THAT(outcome.out, StartsWith("drives: 2 records, "));
  EXPECT_THAT(outcome.out, EndsWith("_decoded.txt; its header announces 9\n"));
  EXPECT_TRUE(files.exists("/out/storphydrive_info_decoded.txt"));
  EXPECT_EQ(outcome.exit_code, 1);
}

TEST_F(DecodeReport, MakesItsReportPrintable) {
  store(kBbusDecoder, kBbusDecoder.file_of(1));

  const Outcome outcome = run(mcstore_command() + " decode " + files.real("/in") + " " + files.real("/out") +
                              "\"$(printf '\\033[31m')\" bbus");

  EXPECT_THAT(outcome.out, HasSubstr(files.real("/out") + "\\x1b[31m/"));
  EXPECT_EQ(outcome.out.find('\033'), std::string::npos);
}

TEST_F(DecodeReport, TellsWhatIsNoWholeRecord) {
  store(kControllersDecoder, kControllersDecoder.file_of(1) + Bytes::repeated(17, 0));
  store(kVirtualDrivesDecoder, Bytes::repeated(100, 0));

  const Outcome outcome = decode("controllers virtual-drives");

  EXPECT_THAT(outcome.out, HasSubstr("_decoded.txt; the last 17 bytes are no whole record\n"));
  EXPECT_THAT(outcome.out,
              HasSubstr("virtual-drives: no records, nothing to write; the last 100 bytes are no whole record\n"));
  EXPECT_TRUE(files.exists("/out/storctlr_info_decoded.txt"));
  EXPECT_EQ(outcome.exit_code, 1);
}

}  // namespace
}  // namespace tests
