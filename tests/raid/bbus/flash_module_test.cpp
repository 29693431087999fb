#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>

#include "raid/bbus/flash_module_test.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FlashModule : public FlashModuleTest {
 protected:
  // The six bytes that make the revision.
  Bytes revision_of(const std::string &six) {
    const Bytes four_empty_fields_and_the_file_id = Bytes::repeated(5, 0);
    const Bytes custom = image_field(std::string_view(six));
    return read(image_of(four_empty_fields_and_the_file_id + custom)).slice(kRevision, 16);
  }
};

// ------------------------------------------------------------------------------------------------------ the fields

TEST_F(FlashModule, FillsTheFourTextsAndLeavesTheRest) {
  EXPECT_EQ(read(flash_module_image()), with_flash_module(record_of_dots()));
}

TEST_F(FlashModule, TheBoardAreasPlaceIsCountedInUnitsOfEight) {
  const Bytes fields = image_field("Vendor") + image_field("Model");

  for (const uint8_t unit : std::vector<uint8_t>{0, 1, 2, 7, 13})
    EXPECT_EQ(read(blank_image().put(3, Bytes().u8(unit)).put(unit * 8u + 6, fields)).slice(kVendor, 26),
              Bytes().text("Vendor", 7).text(".............", 13).text("Model", 6))
        << int{unit};
}

TEST_F(FlashModule, TheTypeOfAFieldPlaysNoPart) {
  EXPECT_EQ(image_field("Tarvo")[0], 0xC5);

  for (const uint8_t type : std::vector<uint8_t>{0, 1, 2, 3})
    EXPECT_EQ(read(image_of(image_field("Tarvo", type) + image_field("M", type) + image_field("S", type) +
                            image_field("P", type) + image_field("F", type) + image_field("AB1CDE", type))),
              record_of_dots()
                  .put_text(kVendor, "Tarvo")
                  .put_text(kModel, "M")
                  .put_text(kSerial, "S")
                  .put_text(kRevision, "P[AB]F[49]V[CDE"))
        << int{type};
}

TEST_F(FlashModule, FieldsWithoutDataMakeEmptyTexts) {
  const Bytes record = read(image_of(Bytes::repeated(5, 0xC0)));

  for (const size_t text : {kVendor, kModel, kSerial}) EXPECT_EQ(record.slice(text, 2), Bytes::hex("00 2E")) << text;
}

TEST_F(FlashModule, ANulInTheDataIsCopiedLikeAnyByte) {
  const std::string data = {'a', 0, 'b'};

  EXPECT_EQ(read(image_of(image_field(data))).slice(kVendor, 5), Bytes().text(data, 4).u8('.'));
}

TEST_F(FlashModule, SkipsThePartNumberAndTheFileId) {
  const Bytes start = image_field("V") + image_field("M") + image_field("S");
  const Bytes custom = image_field(
      "AB\x07"
      "CDE");

  for (const size_t length : {0u, 1u, 30u})
    EXPECT_EQ(read(image_of(start + image_field(std::string(length, 'p')) + image_field(std::string(length / 2, 'f')) +
                            custom)),
              read(image_of(start + image_field("") + image_field("") + custom)))
        << length;
}

TEST_F(FlashModule, ForItTheRecordsPlaceInTheReplyPlaysNoPart) {
  files.write(kFlashModuleImage, flash_module_image());
  for (const int32_t index : {-1, 0, 7, 255}) {
    Bytes record = record_of_dots();
    std::vector<uint8_t> memory(record.data(), record.data() + kBbuSize);

    PLUGIN(read_tarvo_tfm_vpd)(reinterpret_cast<StorBbuInfo *>(memory.data()), index);

    EXPECT_EQ(Bytes(memory), with_flash_module(record)) << index;
  }
}

// ------------------------------------------------------------------------------------------------------ revision

TEST_F(FlashModule, ARevisionIsMadeOfSixBytes) {
  EXPECT_EQ(revision_of("AB\x01"
                        "CDE"),
            Bytes().text("P[AB]F[1]V[CDE]", 16));
  EXPECT_EQ(revision_of({'A', 'B', 0, 'C', 'D', 'E'}), Bytes().text("P[AB]F[0]V[CDE]", 16));
  EXPECT_EQ(revision_of("AB\x09"
                        "CDE"),
            Bytes().text("P[AB]F[9]V[CDE]", 16));
}

TEST_F(FlashModule, ARevisionWithALongerNumberIsCutAt15Characters) {
  EXPECT_EQ(revision_of("AB\x0A"
                        "CDE"),
            Bytes().text("P[AB]F[10]V[CDE", 16));
  EXPECT_EQ(revision_of("AB1CDE"), Bytes().text("P[AB]F[49]V[CDE", 16));
  EXPECT_EQ(revision_of("ABdCDE"), Bytes().text("P[AB]F[100]V[CD", 16));
  EXPECT_EQ(revision_of("AB\xFF"
                        "CDE"),
            Bytes().text("P[AB]F[255]V[CD", 16));
}

TEST_F(FlashModule, ANulAmongTheSixBytesIsACharacterOfTheRevision) {
  const std::string nul(1, '\0');

  EXPECT_EQ(revision_of({0, 'B', 1, 'C', 'D', 'E'}), Bytes().text("P[" + nul + "B]F[1]V[CDE]", 16));
  EXPECT_EQ(revision_of({'A', 'B', 1, 'C', 0, 'E'}), Bytes().text("P[AB]F[1]V[C" + nul + "E]", 16));
  EXPECT_EQ(revision_of({0, 0, 0, 0, 0, 0}), Bytes().text("P[" + nul + nul + "]F[0]V[" + nul + nul + nul + "]", 16));
}

TEST_F(FlashModule, ARevisionsCharactersAreNoFormat) {
  EXPECT_EQ(revision_of("%s\x01%n%"), Bytes().text("P[%s]F[1]V[%n%]", 16));
}

TEST_F(FlashModule, ALengthOfTheCustomFieldPlaysNoPart) {
  EXPECT_EQ(revision_of("AB\x01"
                        "CDE"),
            read(image_of(Bytes::repeated(6, 0) + Bytes().text("AB\x01"
                                                               "CDE",
                                                               6)))
                .slice(kRevision, 16));
}

// ------------------------------------------------------------------------------------------------------ no image

TEST_F(FlashModule, WithoutAnImageTheRecordStaysAsItIs) {
  trace_at(9);

  EXPECT_EQ(read_into(record_of_dots()), record_of_dots());
  EXPECT_THAT(calls(), ElementsAre("fopen /var/log/TFM_FRU.bin"));
  EXPECT_THAT(system_log(), IsEmpty());
  EXPECT_EQ(trace(), "");
}

TEST_F(FlashModule, WithAnImageThatMayNotBeReadTheRecordStaysAsItIs) {
  fail("fopen", 1, EACCES);

  EXPECT_EQ(read(flash_module_image()), record_of_dots());
  EXPECT_THAT(system_log(), IsEmpty());
}

std::string read_failed(int count) {
  return "mcserver_storage.cpp:2209:TFM_FRU file read : FAILED : bytes read = " + std::to_string(count) + "\n";
}

TEST_F(FlashModule, AShortImageIsLoggedAndChangesNothing) {
  use_cmclog = 1;  // which is about the trace alone
  for (const int size : {0, 1, 64, 127}) {
    EXPECT_EQ(read(flash_module_image().slice(0, static_cast<size_t>(size))), record_of_dots());
    EXPECT_THAT(system_log(), ElementsAre(read_failed(size)));
  }
}

TEST_F(FlashModule, OfALongImageOnlyTheStartCounts) {
  const Bytes image = blank_image().put(3, Bytes().u8(15)).put(126, Bytes().u8(3).u8('Z'));

  EXPECT_EQ(read(image + Bytes::repeated(1000, 'Q')), with_image(record_of_dots(), image));
  EXPECT_THAT(system_log(), IsEmpty());
}

TEST_F(FlashModule, AnImageThatIsADirectoryCountsAsOneOfNoBytes) {
  std::filesystem::create_directories(files.real(kFlashModuleImage));

  EXPECT_EQ(read_into(record_of_dots()), record_of_dots());
  EXPECT_THAT(system_log(), ElementsAre(read_failed(0)));
}

TEST_F(FlashModule, AnImageThatCannotBeReadCountsAsOneOfNoBytes) {
  fail("fread", 1, EIO);

  EXPECT_EQ(read(flash_module_image()), record_of_dots());
  EXPECT_THAT(system_log(), ElementsAre(read_failed(0)));
}

TEST_F(FlashModule, NothingOfAnEarlierImageIsLeft) {
  read(Bytes::repeated(kImageSize, 'X').put(3, Bytes().u8(1)));

  EXPECT_EQ(read(flash_module_image()), with_flash_module(record_of_dots()));
}

TEST_F(FlashModule, ANullRecordIsLoggedAndNoImageIsRead) {
  files.write(kFlashModuleImage, flash_module_image());
  use_cmclog = 1;

  PLUGIN(read_tarvo_tfm_vpd)(nullptr, 3);

  EXPECT_THAT(system_log(), ElementsAre("mcserver_storage.cpp:2188:read_tarvo_tfm_vpd: NULL Pointer\n"));
  EXPECT_THAT(calls(), ElementsAre("syslog"));
}

TEST_F(FlashModule, TheImageIsClosed) {
  read(flash_module_image());

  EXPECT_EQ(number_of_calls("fclose"), 1);
}

}  // namespace
}  // namespace tests
