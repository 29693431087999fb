// The flash module's product data: an IPMI FRU image, of which only the board area's fields are of interest. A field is
// one type/length byte, whose low six bits are the length, and its data.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "mcserver_storage.h"
#include "records/bbu_record.h"
#include "shared/exported.h"
#include "shared/stream.h"
#include "shared/trace.h"

namespace mcserver::raid::bbus {
namespace {

constexpr char kFunction[] = "read_tarvo_tfm_vpd";
constexpr int kImageSize = 128;

// The first bytes of the image. Zeros seem to follow them, since an image may have positions that lead there.
class Image {
 public:
  // How many bytes came, at most kImageSize; -1 when there is no image.
  int read() {
    const Stream stream(fopen(records::kFlashModulePath, "rb"));
    return stream ? static_cast<int>(fread(bytes_, 1, kImageSize, stream.get())) : -1;
  }

  uint8_t at(size_t position) const { return position < sizeof bytes_ ? bytes_[position] : uint8_t{0}; }

 private:
  uint8_t bytes_[kImageSize] = {};
};

// Walks the fields of the board area. A position has 8 bits and wraps.
class BoardArea {
 public:
  explicit BoardArea(const Image &image)
      : image_(image), position_(static_cast<uint8_t>(image.at(kAreaOffset) * kAreaUnit + kFirstField)) {}

  // Copies the field's data, and a NUL behind it, to this offset of the record, and goes on to the next field. The
  // length is not compared with the width of the record's field: what is too long runs into the following ones, but not
  // out of the record.
  void copy_next(StorBbuInfo *record, size_t offset) {
    uint8_t *const bytes = reinterpret_cast<uint8_t *>(record);
    const size_t end = offset + length();
    for (size_t i = offset; i < std::min(end, sizeof *record); ++i) bytes[i] = image_.at(data() + (i - offset));
    if (end < sizeof *record) bytes[end] = 0;
    skip();
  }

  void skip() { position_ = static_cast<uint8_t>(data() + length()); }

  // Where the field's data begin.
  uint8_t data() const { return static_cast<uint8_t>(position_ + 1); }

 private:
  static constexpr size_t kAreaOffset = 3;  // of the byte that tells where the area begins
  static constexpr int kAreaUnit = 8;
  static constexpr int kFirstField = 6;

  uint8_t length() const { return image_.at(position_) & 0x3F; }

  const Image &image_;
  uint8_t position_;
};

}  // namespace

EXPORTED void read_tarvo_tfm_vpd(StorBbuInfo *record, int32_t) {
  if (!record) {
    SYSTEM_LOG(kStorageSource, 2188, "%s: NULL Pointer\n", kFunction);
    return;
  }

  Image image;
  const int count = image.read();
  if (count == -1) return;
  if (count < kImageSize) {
    SYSTEM_LOG(kStorageSource, 2209, "TFM_FRU file read : FAILED : bytes read = %d\n", count);
    return;
  }

  BoardArea board(image);
  board.copy_next(record, offsetof(StorBbuInfo, tfm_vendor));
  board.copy_next(record, offsetof(StorBbuInfo, tfm_model));
  board.copy_next(record, offsetof(StorBbuInfo, tfm_serial_num));
  board.skip();  // the part number
  board.skip();  // the FRU file id
  // The first custom field. Its length plays no part, and the six positions do not wrap.
  const size_t custom = board.data();
  char revision[sizeof "P[ab]F[255]V[cde]"];
  snprintf(revision, sizeof revision, "P[%c%c]F[%1d]V[%c%c%c]", image.at(custom), image.at(custom + 1),
           image.at(custom + 2), image.at(custom + 3), image.at(custom + 4), image.at(custom + 5));
  // Never shorter than its field, but longer when the number has more than one digit.
  revision[sizeof record->tfm_revision - 1] = '\0';
  memcpy(record->tfm_revision, revision, sizeof record->tfm_revision);
}

}  // namespace mcserver::raid::bbus
