#include "decoders/decoder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "decoders/path.h"
#include "mcserver_storage.h"
#include "shared/owned_memory.h"
#include "shared/record_reader.h"
#include "shared/stream.h"

namespace mcserver::decoders {
namespace {

int complain(const char *format, const Path &path) { return fprintf(stderr, format, path.c_str()); }

void *zeroed(uint64_t size) {
  if (size <= SIZE_MAX) return calloc(1, static_cast<size_t>(size));
  errno = ENOMEM;
  return nullptr;
}

uint64_t size_of(std::span<const HeaderNumber> header) {
  uint64_t size = 0;
  for (const HeaderNumber &number : header) size += number.size;
  return size;
}

// Gives the first byte of the number that comes last: the subsystem state, for the kinds that have one. Says which
// number cannot be read, and then gives nothing.
std::optional<uint8_t> read_header(std::span<const HeaderNumber> header, FILE *input, const Path &input_path) {
  uint8_t bytes[kLongestNumber] = {};
  for (const HeaderNumber &number : header) {
    errno = 0;  // a file that ends here sets none
    if (fread(bytes, number.size, 1, input) == 1) continue;
    complain(number.unreadable, input_path);
    return {};
  }
  return bytes[0];
}

// Without a file to write to there is no summary, but the records may still find one.
void append_summary(const Summary &summary, const Path &output_path, uint8_t state, uint64_t count) {
  const Stream output(fopen(output_path.c_str(), "a"));
  if (!output) return;
  fprintf(output.get(), summary.state, state);
  fprintf(output.get(), summary.count, static_cast<int32_t>(count));
}

void append_records(const Records &records, RecordReader reader, uint8_t *memory, const Path &output_path) {
  for (;;) {
    void *const slot = records.next_slot(memory);
    if (!reader.read(slot, records.size)) return;
    records.count(memory);
    records.append(output_path.c_str(), slot);
  }
}

}  // namespace

int decode(const Decoder &decoder, const char *input_dir, const char *output_dir) {
  if (!input_dir || !output_dir) return MC_STORE_UNAVAILABLE;
  const char *const name = strrchr(decoder.store_path, '/') + 1;
  const Path input_path(input_dir, name);
  const Path output_path(output_dir, name, "_decoded.txt");
  unlink(output_path.c_str());  // whatever becomes of this run, nothing of an earlier one is left

  Stream input(fopen(input_path.c_str(), "rb"));
  if (!input) return complain(decoder.unopened, input_path);
  struct stat about;
  if (stat(input_path.c_str(), &about) != 0)
    return decoder.unknown_size ? complain(decoder.unknown_size, input_path) : input.close();

  const uint64_t size = static_cast<uint64_t>(about.st_size);
  const uint64_t needed = decoder.records.size + (decoder.records.all_at_once ? size : 0);
  OwnedMemory memory;
  // When memory is asked for shows in what a failure leaves behind: a summary or none. False without memory.
  const auto allocate_if_due = [&](AllocationTime now) {
    if (decoder.allocation == now) memory.take(zeroed(needed));
    return decoder.allocation != now || memory;
  };
  const auto refuse = [&] {
    const int printed = fprintf(stderr, "calloc(%d) failed: %s\n", static_cast<int32_t>(needed), strerror(errno));
    return decoder.failed_allocation == ResultOf::kMessage ? printed : input.close();
  };
  if (!allocate_if_due(AllocationTime::kBeforeHeader)) return refuse();
  const std::optional<uint8_t> state = read_header(decoder.header, input.get(), input_path);
  if (!state) return input.close();
  if (decoder.summary) append_summary(*decoder.summary, output_path, *state, size / decoder.records.size);
  if (!allocate_if_due(AllocationTime::kBeforeRecords)) return refuse();

  // The header may have been written after the size was taken.
  const uint64_t size_of_records = size - std::min(size, size_of(decoder.header));
  append_records(decoder.records, RecordReader(input.get(), size_of_records), memory.bytes(), output_path);
  return input.close();
}

}  // namespace mcserver::decoders
