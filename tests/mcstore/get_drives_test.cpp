#include <gmock/gmock.h>

#include "mcstore/command_line.h"
#include "mcstore/shown_json.h"
#include "raid/drives/drive_bytes.h"
#include "raid/drives/full_record.h"
#include "records/drive_record.h"

namespace tests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class GetDrives : public McstoreTest {
 protected:
  GetDrives() { files.write("/var/storctlr_info", Bytes().u8(2)); }

  void store(const Bytes &record) { files.write(kDriveStore, little_endian().u32(1) + record); }
};

TEST_F(GetDrives, JsonReproducesTheStoreFile) {
  store(full_drive_record(Bytes::Order::kLittle));
  const std::string stored = files.read(kDriveStore);
  const ShownJson shown(mcstore_here("get drives --format json").out);

  files.write_text("/again.json", R"({"drives": {"noofDrives": 1, "records": )" + shown["records"].text() + "}}");
  files.remove(kDriveStore);
  EXPECT_EQ(mcstore_here("collect " + files.real("/again.json")).exit_code, 0);

  EXPECT_EQ(files.read(kDriveStore), stored);
}

TEST_F(GetDrives, JsonHasRawValues) {
  store(full_drive_record(Bytes::Order::kLittle));

  const ShownJson drive = ShownJson(mcstore_here("get drives --format json").out)["records"][0];

  EXPECT_EQ(drive.size(), std::size(mcserver::records::kDrive));
  EXPECT_EQ(drive["raw_size"], 0x8737677700112201u);
  EXPECT_EQ(drive["rebuild_percent_complete"], -1);
  EXPECT_EQ(drive["rebuild_start_timestamp"], 0x8A3A6A7A);
  EXPECT_EQ(drive["enclosure_association"], 1);
  EXPECT_EQ(drive["enclosure_logical_id"], "500605b00d1e2fa3");
  EXPECT_EQ(drive["enclosure_sas_address[1]"], 0x9000C500A1B2C3D5u);
}

TEST_F(GetDrives, TableHasSizesAndTimesAsPeopleReadThem) {
  store(Bytes::repeated(kDriveSize, 0)
            .put(21, little_endian().u16(512).u64(1200243695616))
            .put(109, little_endian().u32(1772448300).u32(0xFFFFFFFF))
            .put(260, Bytes::hex("02 50 06 05 b0 0d 1e 2f a3"))
            .put(360, little_endian().u64(18250)));

  const std::string table = mcstore_here("get drives").out;

  EXPECT_THAT(table, StartsWith("Physical drives: 1\n"));
  EXPECT_THAT(table, HasSubstr("\nblock_size                    512 B\n"));
  EXPECT_THAT(table, HasSubstr("\nraw_size                      1.1 TiB\n"));
  EXPECT_THAT(table, HasSubstr("\nrebuild_start_timestamp       2026-03-02 10:45:00 UTC\n"));
  EXPECT_THAT(table, HasSubstr("\nrebuild_end_timestamp         none\n"));
  EXPECT_THAT(table, HasSubstr("\nenclosure_association         through an expander\n"));
  EXPECT_THAT(table, HasSubstr("\nenclosure_logical_id          500605b00d1e2fa3\n"));
  EXPECT_THAT(table, HasSubstr("\npower_on_hours                18250 h (760 days)\n"));
}

TEST_F(GetDrives, TellsASimulation) {
  files.write_text("/debug/mctool_storage_debug", "");

  const ShownJson json(mcstore_here("get drives --format json").out);

  EXPECT_EQ(json["simulated"], true);
  ASSERT_EQ(json["records"].size(), 2u);
  EXPECT_EQ(json["records"][1]["product_id"], "ST3300657SS");
  EXPECT_EQ(json["records"][1]["enclosure_device_id"], 2);
}

// The drive is swapped as soon as the first call has told of it, a second before the next one.
TEST_F(GetDrives, WatchReportsASwap) {
  files.write(kDriveStore, drive_file(1, {numbered_drive(0)}));
  files.write("/swapped", drive_file(1, {{.serial = "SERIAL-1"}}), 2000);
  const std::string watch = " watch drives --interval 1 --count 2 --root " + files.real("");
  const std::string swap = "mv " + files.real("/swapped") + " " + files.real(kDriveStore);

  EXPECT_EQ(run(mcstore_command() + watch +
                " | while read -r line; do echo \"$line\"; case $line in 'new '*SERIAL-0*) " + swap + ";; esac; done")
                .out,
            "call 1: 1 new\n"
            "new       SERIAL-0 (controller_index 0, slot_num 0)\n"
            "call 2: 1 new, 1 gone\n"
            "new       SERIAL-1 (controller_index 0, slot_num 0)\n"
            "gone      SERIAL-0 (controller_index 0, slot_num 0)\n");
}

}  // namespace
}  // namespace tests
