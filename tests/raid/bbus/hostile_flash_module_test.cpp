#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <random>
#include <stdexcept>

#include "raid/bbus/flash_module_test.h"

namespace tests {
namespace {

class HostileFlashModule : public FlashModuleTest {};

// ------------------------------------------------------------------------------------------------------ false lengths

std::string letters(size_t count, char letter) { return std::string(count, letter); }

TEST_F(HostileFlashModule, ATextThatFillsItsFieldEndsInTheNextOne) {
  const Bytes record = read(image_of(image_field(letters(20, 'v')) + image_field("")));

  EXPECT_EQ(record.slice(kVendor, 22), Bytes().text(letters(20, 'v'), 20).u8(0).u8('.'));
}

TEST_F(HostileFlashModule, ATextThatIsTooLongRunsIntoTheFollowingFields) {
  const Bytes record = read(image_of(image_field(letters(63, 'v')) + image_field("M") + image_field("S")));

  EXPECT_EQ(record.slice(kVendor, 56),
            Bytes().text(letters(20, 'v') + "M", 22).text(letters(18, 'v') + "S", 20).text(letters(14, 'v'), 14));
}

TEST_F(HostileFlashModule, ATextThatIsTooLongStopsAtTheEndOfTheRecord) {
  for (const size_t length : {31u, 32u, 33u, 63u}) {
    const Bytes image = image_of(image_field("") + image_field("") + image_field(letters(length, 's')));

    const Bytes record = read(image);

    EXPECT_EQ(record.slice(kSerial, 16), Bytes::repeated(16, 's')) << length;
    EXPECT_EQ(record, with_image(record_of_dots(), image)) << length;
  }
}

TEST_F(HostileFlashModule, AModelThatIsTooLongStopsAtTheEndOfTheRecord) {
  for (const size_t length : {51u, 52u, 53u, 63u}) {
    const Bytes record = read(image_of(image_field("") + image_field(letters(length, 'm')) + image_field("")));
    EXPECT_EQ(record.slice(kModel, 36), Bytes().text(letters(20, 'm'), 20).u8(0).text(letters(15, 'm'), 15)) << length;
  }
}

TEST_F(HostileFlashModule, PositionsWrap) {
  const Bytes fields = image_field("Vendor") + image_field("Model");

  // 32 + 1, 64 + 1 and so on lead to the same place as 1.
  for (const uint8_t unit : std::vector<uint8_t>{33, 65, 225})
    EXPECT_EQ(read(image_of(fields).put(3, Bytes().u8(unit))), read(image_of(fields))) << int{unit};
}

// The area begins at byte 248, its first field at 254. Behind 255 the walk is at the start of the image again: the
// serial number has its length in byte 0.
TEST_F(HostileFlashModule, AWalkBeyondTheImageComesBackToItsStart) {
  const Bytes image = blank_image().put(0, Bytes().u8(2).text("xy", 2).u8(31));

  const Bytes record = read(image);

  EXPECT_EQ(record.slice(kVendor, 2), Bytes::hex("00 2E"));
  EXPECT_EQ(record.slice(kModel, 2), Bytes::hex("00 2E"));
  EXPECT_EQ(record.slice(kSerial, 4), Bytes().text("xy", 3).u8('.'));
  EXPECT_EQ(record, with_image(record_of_dots(), image));
}

// The area begins at byte 240, and the custom field's data at byte 252: they do not continue in byte 0.
TEST_F(HostileFlashModule, TheSixBytesOfTheRevisionDoNotWrap) {
  const Bytes image = Bytes::repeated(kImageSize, 'X').put(3, Bytes().u8(30));

  EXPECT_EQ(read(image).slice(kRevision, 16), Bytes::hex("50 5B 00 00 5D 46 5B 30 5D 56 5B 00 00 00 5D 00"));
}

TEST_F(HostileFlashModule, ZerosFollowTheImage) {
  const Bytes image = blank_image().put(3, Bytes().u8(15)).put(126, Bytes().u8(10).u8('Z'));  // data: 127 to 136

  EXPECT_EQ(read(image).slice(kVendor, 12), Bytes().text("Z", 11).u8('.'));
}

// ------------------------------------------------------------------------------------------------------ any image

class AnyFlashModule : public FlashModuleTest {
 protected:
  // In place, so that many thousand images cost little.
  void overwrite(size_t offset, const uint8_t *bytes, size_t count) {
    if (pwrite(file_.number, bytes, count, static_cast<off_t>(offset)) != static_cast<ssize_t>(count))
      throw std::runtime_error("cannot write the image");
  }

  void expect_the_right_texts(const Bytes &image) {
    if (calls().size() > 1000) forget_calls();
    ASSERT_EQ(read_into(record_of_dots()), with_image(record_of_dots(), image)) << testing::PrintToString(image);
  }

 private:
  struct File {
    explicit File(const std::string &path) : number(open(path.c_str(), O_WRONLY | O_CLOEXEC)) {}
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    ~File() { close(number); }
    const int number;
  };

  // Made before it is opened.
  File file_ = [this] {
    files.write(kFlashModuleImage, blank_image());
    return File(files.real(kFlashModuleImage));
  }();
};

TEST_F(AnyFlashModule, WithAnyByteOfAnyValueIsReadAsItStands) {
  const Bytes image = flash_module_image();
  overwrite(0, image.data(), kImageSize);
  for (size_t offset = 0; offset < kImageSize && !HasFailure(); ++offset) {
    for (unsigned value = 0; value < 256 && !HasFailure(); ++value) {
      const auto byte = static_cast<uint8_t>(value);
      overwrite(offset, &byte, 1);
      expect_the_right_texts(Bytes(image).put(offset, Bytes().u8(byte)));
    }
    overwrite(offset, image.data() + offset, 1);
  }
}

TEST_F(AnyFlashModule, OfRandomBytesIsReadAsItStands) {
  std::mt19937 random(20240229);
  for (int round = 0; round < 4000 && !HasFailure(); ++round) {
    const unsigned range = round % 2 ? 256 : 24;  // short fields lead to more of them
    std::vector<uint8_t> bytes(kImageSize);
    for (uint8_t &byte : bytes) byte = static_cast<uint8_t>(random() % range);
    overwrite(0, bytes.data(), bytes.size());
    expect_the_right_texts(Bytes(bytes));
  }
}

}  // namespace
}  // namespace tests
