#include "mcstore/json/flash_module.h"

#include <fmt/core.h>

#include <array>
#include <numeric>

#include "mcserver_storage.h"

namespace mcstore {
namespace {

constexpr size_t kImageSize = 128;
constexpr size_t kUnit = 8;  // areas begin at and consist of multiples of this
constexpr size_t kBoardArea = 8;
constexpr uint8_t kAsciiType = 0xC0;
constexpr uint8_t kEndOfFields = 0xC1;

// A text of the board area, in their order there.
struct BoardText {
  const char *name;
  size_t longest;
};
constexpr size_t kLongestField = 63;
constexpr BoardText kBoardTexts[] = {
    {"manufacturer", sizeof StorBbuInfo::tfm_vendor - 1},
    {"product_name", sizeof StorBbuInfo::tfm_model - 1},
    {"serial_number", sizeof StorBbuInfo::tfm_serial_num - 1},
    {"part_number", kLongestField},
    {"fru_file_id", kLongestField},
};
constexpr const char *kRevision = "revision";

// A type/length byte and the data. One byte of ASCII would read as the end of the fields, so it is called binary.
void append_field(std::vector<uint8_t> &image, const std::string &data, bool is_text) {
  const bool is_ascii = is_text && data.size() != 1;
  image.push_back(static_cast<uint8_t>((is_ascii ? kAsciiType : 0) | data.size()));
  image.insert(image.end(), data.begin(), data.end());
}

// The first custom field: two characters, a number, three characters.
std::string revision(const Json &object, const std::string &place) {
  refuse_other_keys(as_object(object, place), {"part", "format", "version"}, place);
  const auto characters = [&](const char *name, size_t count) {
    const std::string name_place = fmt::format("{}.{}", place, name);
    std::string text = as_text(object.value(name, Json("")), count, name_place);
    if (text.size() != count) refuse(name_place, fmt::format("must be {} characters", count));
    return text;
  };
  const uint64_t format = as_number(object.value("format", Json(0u)), 0, 9, fmt::format("{}.format", place));
  return characters("part", 2) + static_cast<char>(format) + characters("version", 3);
}

// Makes the sum of an area's bytes 0 by its last one.
void close_area(std::span<uint8_t> area) {
  area.back() = static_cast<uint8_t>(-std::accumulate(area.begin(), area.end() - 1, 0));
}

}  // namespace

std::vector<uint8_t> flash_module_image(const Json &object, const std::string &place) {
  refuse_other_keys(as_object(object, place),
                    {kBoardTexts[0].name, kBoardTexts[1].name, kBoardTexts[2].name, kBoardTexts[3].name,
                     kBoardTexts[4].name, kRevision},
                    place);
  // The common header: format version, and where the board area begins. Then that area's own: format version, length,
  // language (English), and a date of manufacture that is not told.
  std::vector<uint8_t> image = {1, 0, 0, kBoardArea / kUnit, 0, 0, 0, 0, 1, (kImageSize - kBoardArea) / kUnit, 0,
                                0, 0, 0};
  for (const BoardText &text : kBoardTexts)
    append_field(
        image, as_text(object.value(text.name, Json("")), text.longest, fmt::format("{}.{}", place, text.name)), true);
  if (object.contains(kRevision))
    append_field(image, revision(object[kRevision], fmt::format("{}.{}", place, kRevision)), false);
  image.push_back(kEndOfFields);

  const size_t room = kImageSize - 1;  // the last byte makes the sum
  if (image.size() > room) refuse(place, fmt::format("its texts are {} bytes too long together", image.size() - room));
  image.resize(kImageSize);
  close_area(std::span(image).first(kBoardArea));
  close_area(std::span(image).subspan(kBoardArea));
  return image;
}

}  // namespace mcstore
