#include "shared/record_reader.h"

#include <algorithm>
#include <cerrno>

namespace mcserver {

bool RecordReader::read(void *to, size_t size) {
  const size_t wanted = static_cast<size_t>(std::min<uint64_t>(size, remaining_));
  const size_t got = wanted > 0 ? fread(to, 1, wanted, stream_) : 0;
  remaining_ -= got;
  if (got == size) return true;

  // At the known size, one byte more tells the end of the file from a failing read. What a file that grew holds there
  // is of no interest: it counts as ended.
  char beyond;
  const bool has_grown = got == wanted && fread(&beyond, 1, 1, stream_) == 1;
  error_ = errno;
  fell_short_ = true;
  at_end_ = has_grown || feof(stream_);
  return false;
}

int RecordReader::error() const { return fell_short_ ? error_ : errno; }

}  // namespace mcserver
