#include <gmock/gmock.h>

#include <algorithm>
#include <pugixml.hpp>

#include "mcstore/command_line.h"
#include "mcstore/inventories.h"
#include "mcstore/shown_json.h"
#include "nvme/nvme_bytes.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"

namespace tests {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class GetFormats : public McstoreTest {};

TEST_F(GetFormats, CsvHasEveryFieldOfEveryDevice) {
  files.write(kControllerStore, controller_file(2, {}));
  files.write(kDriveStore, drive_file(2, {numbered_drive(1), numbered_drive(2)}));

  const Outcome outcome = mcstore_here("get drives --format csv");

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 3);
  EXPECT_THAT(outcome.out, StartsWith("device,health,controller_index,slot_num,"));
  EXPECT_THAT(outcome.out, HasSubstr("\r\nc0/e0/s2,OK,0,2,"));
  EXPECT_EQ(mcstore_here("get drives --format csv --columns serial --no-header --sort device").out,
            "SERIAL-1\r\nSERIAL-2\r\n");
}

TEST_F(GetFormats, XmlIsOneDocument) {
  files.write(kControllerStore, controller_file(2, {Controller()}));

  const Outcome outcome = mcstore_here("get all --format xml");

  pugi::xml_document document;
  ASSERT_TRUE(document.load_string(outcome.out.c_str())) << outcome.out;
  const pugi::xml_node inventory = document.child("inventory");
  EXPECT_EQ(inventory.attribute("root").value(), files.real(""));
  EXPECT_EQ(std::ranges::distance(inventory.children("kind")), 7);
  EXPECT_STREQ(inventory.child("kind").attribute("status").value(), "fine");
  EXPECT_STREQ(inventory.find_child_by_attribute("name", "bbus").attribute("status").value(), "absent");
}

TEST_F(GetFormats, XmlIsWholeWhateverFails) {
  const Outcome outcome = mcstore_here("get all --format xml");

  EXPECT_EQ(outcome.exit_code, 3);
  EXPECT_TRUE(pugi::xml_document().load_string(outcome.out.c_str()));
}

TEST_F(GetFormats, JsonIsOneDocumentWhateverFails) {
  const ShownJson empty(mcstore_here("get all --format json").out);
  files.write(kControllerStore, controller_file(2, {Controller()}));
  files.write(kDriveStore, drive_file(9, {numbered_drive(1), numbered_drive(2)}));

  const Outcome outcome = mcstore_here("get all --format json --filter device=c0/e0/s2");
  const ShownJson json(outcome.out);

  EXPECT_EQ(empty["kinds"].size(), 7u);
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(json["root"], files.real(""));
  EXPECT_EQ(json["kinds"][0]["devices"].size(), 0u);
  EXPECT_EQ(json["kinds"][1]["status"], "damaged");
  ASSERT_EQ(json["kinds"][1]["devices"].size(), 1u);
  EXPECT_EQ(json["kinds"][1]["devices"][0]["device"], "c0/e0/s2");
}

TEST_F(GetFormats, NdjsonIsALineForEachDevice) {
  files.write(kControllerStore, controller_file(2, {Controller()}));
  files.write(kDriveStore, drive_file(2, {numbered_drive(1), numbered_drive(2)}));

  const std::string lines = mcstore_here("get all --format ndjson").out;

  EXPECT_EQ(std::ranges::count(lines, '\n'), 3);
  EXPECT_EQ(ShownJson(lines.substr(0, lines.find('\n')))["kind"], "controllers");
}

TEST_F(GetFormats, HexIsTheReplyAsItCame) {
  files.write(kControllerStore, controller_file(1, {}));

  char expected[256];
  snprintf(expected, sizeof expected,
           "00000000  28 00 00 01 00 00 00 %02x %02x 00 00 00 00 00 00 00  |(...............|\n"
           "00000010  00 00                                            |..|\n",
           kControllerSize >> 8, kControllerSize & 0xFF);
  EXPECT_EQ(mcstore_here("get controllers --format hex").out, expected);
  EXPECT_THAT(mcstore_here("get all --format hex").out,
              AllOf(StartsWith(std::string("RAID controllers:\n") + expected + "Physical drives:\n"),
                    EndsWith("NVMe drives:\n")));
}

TEST_F(GetFormats, HexGoesOnBehindAKindThatCannotBeRead) {
  files.write(kControllerStore, controller_file(1, {}));
  files.write_text(std::string(kDriveStore) + "/in-the-way", "");

  const Outcome outcome = mcstore_here("get all --format hex");

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("Physical drives:\nVirtual drives:\n"), EndsWith("NVMe drives:\n")));
  EXPECT_EQ(outcome.err, "mcstore: cannot read " + files.real(kDriveStore) + ": it is not a file\n");
}

TEST_F(GetFormats, ASmallBufferGrows) {
  files.write(kControllerStore, controller_file(2, {Controller()}));
  const std::string expected = mcstore_here("get controllers --format hex").out;

  EXPECT_EQ(mcstore_here("get controllers --format hex --buffer-size 1").out, expected);
}

TEST_F(GetFormats, RawXmlIsThePluginsOwn) {
  files.write(kNvmeControllerStore, nvme_controller_file(4, {NvmeController()}));

  EXPECT_EQ(mcstore_here("get nvme-controllers --raw-xml").out,
            controller_summary(1) + plain_controller_xml("NVME-C1"));
}

TEST_F(GetFormats, AQuoteInANameHidesNothing) {
  files.write(kNvmeControllerStore, nvme_controller_file(4, {}));
  files.write(kNvmeDriveStore, nvme_drive_file(4, {NvmeDrive{.product_name = "a\"b"}, NvmeDrive{.slot = "S2"}}));

  const Outcome table = mcstore_here("get nvme-drives");
  const Outcome csv = mcstore_here("get nvme-drives --format csv");

  EXPECT_EQ(table.exit_code, 0);
  EXPECT_THAT(table.out, AllOf(HasSubstr("\n  note: the plug-in's reply is not clear"), HasSubstr(" a\"b "),
                               HasSubstr("nvme S2")));
  EXPECT_THAT(csv.out, HasSubstr(",\"a\"\"b\","));
  EXPECT_THAT(csv.err, StartsWith("mcstore: nvme-drives: note: the plug-in's reply is not clear"));
}

TEST_F(GetFormats, DisturbNoTerminalWhateverAStoreFileHolds) {
  for (const mcstore::Kind &kind : mcstore::kinds())
    if (!kind.store_path.empty())
      files.write(std::string(kind.store_path),
                  store_of(kind, {RecordOf(std::string(kind.name)).every_text(kHostile)}));

  for (const char *arguments : {"all", "all --all-columns", "all --format xml", "all --format json",
                                "all --format ndjson", "all --format hex", "drives c0/e0/s0", "bbus --format csv"})
    for (const char *locale : {"C", "C.UTF-8"}) {
      const Outcome outcome = run("LC_ALL=" + std::string(locale) + ' ' + mcstore_command() + " get " + arguments +
                                  " --root " + files.real(""));

      EXPECT_EQ(outcome.exit_code, 0) << arguments << outcome.err;
      for (const char c : outcome.out + outcome.err)
        EXPECT_TRUE(static_cast<unsigned char>(c) >= 0x20 || c == '\n' || c == '\r') << arguments << int{c};
      EXPECT_THAT(outcome.out, testing::Not(HasSubstr("\xe2\x80\xae")));
    }
}

TEST_F(GetFormats, FailWhenTheyCannotBeWritten) {
  files.write(kControllerStore, controller_file(2, {Controller()}));

  for (const char *format : {"table", "json", "ndjson", "csv", "xml", "hex"}) {
    const Outcome outcome = mcstore_here(std::string("get controllers >/dev/full --format ") + format);
    EXPECT_EQ(outcome.exit_code, 1) << format;
    EXPECT_EQ(outcome.err, "mcstore: cannot write to standard output: No space left on device\n");
  }
}

TEST_F(GetFormats, APluginIsTheVeryFileThatIsNamed) {
  files.write_text("/libc.so.6", "text");  // the dynamic loader would find another one

  const Outcome outcome =
      run("cd " + files.real("") + " && " + mcstore_command() + " get controllers --plugin libc.so.6");

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_THAT(outcome.err, HasSubstr(files.real("/libc.so.6") + ": "));
}

TEST_F(GetFormats, APluginThatCannotBeLoadedIsAFailure) {
  files.write_text("/not-a-plugin.so", "text");

  const Outcome outcome = mcstore_here("get controllers --plugin " + files.real("/not-a-plugin.so"));

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_THAT(outcome.err, HasSubstr("not-a-plugin.so"));
}

TEST_F(GetFormats, TraceToStandardErrorOnRequest) {
  files.write(kControllerStore, controller_file(1, {}));

  EXPECT_THAT(mcstore_here("get controllers --trace 3").err, HasSubstr("fopen(/etc/product) failed: errno 2"));
  EXPECT_EQ(mcstore_here("get controllers --trace 2").err, "");
}

}  // namespace
}  // namespace tests
