// The functions that append one record's text to a file.

#include <gmock/gmock.h>

#include <cerrno>

#include "decoders/decoder_test.h"

namespace tests {
namespace {

using testing::SizeIs;
using testing::ValuesIn;

struct RecordFile {
  const char *function;
  const DecoderKind *kind;
};

void PrintTo(const RecordFile &file, std::ostream *out) { *out << file.function; }

const RecordFile kRecordFiles[] = {
    {"print_controllerinfo", &kControllersDecoder},          {"print_physicaldriveinfo", &kDrivesDecoder},
    {"print_virtualdriveinfo", &kVirtualDrivesDecoder},      {"print_BBUInfo", &kBbusDecoder},
    {"print_nvme_controllerinfo", &kNvmeControllersDecoder}, {"print_nvme_physicaldriveinfo", &kNvmeDrivesDecoder},
};
constexpr char kNvmeDriveFunction[] = "print_nvme_physicaldriveinfo";

class RecordFiles : public DecoderTest, public testing::WithParamInterface<RecordFile> {
 protected:
  const DecoderKind &kind() const { return *GetParam().kind; }
  bool has_result() const { return std::string(GetParam().function) == kNvmeDriveFunction; }

  Printed append(const char *path, const void *record) {
    return printed_by([&] { return call(path, record); });
  }
  Printed append() { return append("/out/text", kind().record.data()); }

  std::string echo(const std::string &path = "/out/text") const { return kind().is_nvme ? "" : path + "\n"; }

 private:
  // The result of a function that has none is 0.
  int call(const char *path, const void *record) {
    if (&kind() == &kControllersDecoder)
      PLUGIN(print_controllerinfo)(path, static_cast<const StorCtlrInfo *>(record));
    else if (&kind() == &kDrivesDecoder)
      PLUGIN(print_physicaldriveinfo)(path, static_cast<const StorPhyDriveInfo *>(record));
    else if (&kind() == &kVirtualDrivesDecoder)
      PLUGIN(print_virtualdriveinfo)(path, static_cast<const StorVirtDriveInfo *>(record));
    else if (&kind() == &kBbusDecoder)
      PLUGIN(print_BBUInfo)(path, static_cast<const StorBbuInfo *>(record));
    else if (&kind() == &kNvmeControllersDecoder)
      PLUGIN(print_nvme_controllerinfo)(path, static_cast<const NvmeCtlrInfo *>(record));
    else
      return PLUGIN(print_nvme_physicaldriveinfo)(path, static_cast<const NvmePhyDriveInfo *>(record));
    return 0;
  }
};

TEST_P(RecordFiles, GrowByOneRecordACall) {
  append();
  const Printed printed = append();

  EXPECT_EQ(files.read("/out/text"), kind().record_text + kind().record_text);
  EXPECT_EQ(printed.out, echo());
  EXPECT_EQ(printed.err, "");
  EXPECT_EQ(printed.result, 0);
}

TEST_P(RecordFiles, ThatCannotBeOpenedAreTold) {
  fail("fopen", 1, EACCES);
  const std::string message =
      std::string("error: unable to open file /out/text") + (kind().is_nvme ? ": Permission denied" : "");

  const Printed printed = append();

  EXPECT_EQ(printed.out, echo() + message);
  EXPECT_EQ(printed.err, "");
  EXPECT_EQ(printed.result, has_result() ? static_cast<int>(message.size()) : 0);
}

TEST_P(RecordFiles, AreMadeWithoutARecordButForNvmeDrives) {
  const Printed printed = append("/out/text", nullptr);

  EXPECT_EQ(files.exists("/out/text"), !has_result());
  EXPECT_EQ(files.read("/out/text"), "");
  EXPECT_EQ(printed.out, has_result() ? "print_nvme_physicaldriveinfo: NULL nvme_pdPtr\n" : echo());
}

TEST_P(RecordFiles, KeepTheirTextWithoutARecord) {
  append();

  append("/out/text", nullptr);

  EXPECT_EQ(files.read("/out/text"), kind().record_text);
}

// An NVMe controller's dumper would say something of a null record.
TEST_P(RecordFiles, TraceNothingWithoutARecord) {
  trace_at(9);

  append("/out/text", nullptr);

  EXPECT_EQ(trace(), "");
}

TEST_P(RecordFiles, NeedAPath) {
  const Printed printed = append(nullptr, kind().record.data());
  const Printed without_record = append(nullptr, nullptr);

  EXPECT_EQ(printed.out + without_record.out, "");
  EXPECT_EQ(printed.result, has_result() ? MC_STORE_UNAVAILABLE : 0);
  EXPECT_EQ(without_record.result, has_result() ? MC_STORE_UNAVAILABLE : 0);
  EXPECT_THAT(calls(), SizeIs(0));
}

TEST_P(RecordFiles, HavePathsOfThreeHundredAndNineteenCharactersAtMost) {
  const std::string directory = "/out/" + std::string(200, 'd');
  std::filesystem::create_directory(files.real(directory));
  for (const size_t length : {318u, 319u, 320u}) {
    const std::string path = directory + "/" + std::string(length - directory.size() - 1, 'f');
    const std::string cut = path.substr(0, 319);
    files.remove(cut);

    const Printed printed = append(path.c_str(), kind().record.data());

    EXPECT_EQ(files.read(cut), kind().record_text) << length;
    EXPECT_EQ(printed.out, echo(cut));
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, RecordFiles, ValuesIn(kRecordFiles),
                         [](const auto &one) { return std::string(one.param.function); });

class NvmeDriveFile : public DecoderTest {
 protected:
  int append() {
    const Bytes record = kNvmeDrivesDecoder.record;
    return PLUGIN(print_nvme_physicaldriveinfo)("/out/text", reinterpret_cast<const NvmePhyDriveInfo *>(record.data()));
  }
};

TEST_F(NvmeDriveFile, HasTheResultOfClosingIt) {
  fail("fclose", 1, EIO);

  EXPECT_EQ(append(), EOF);
}

TEST_F(NvmeDriveFile, HasTheResultOfSayingThatThereIsNoRecord) {
  int puts_gives = 0;
  printed_by([&] { return puts_gives = puts("print_nvme_physicaldriveinfo: NULL nvme_pdPtr"); });

  const Printed printed = printed_by([&] { return PLUGIN(print_nvme_physicaldriveinfo)("/out/text", nullptr); });

  EXPECT_EQ(printed.result, puts_gives);
  EXPECT_GT(printed.result, 0);
}

}  // namespace
}  // namespace tests
