// Decoding a copy of a store file, without a lock and without a host: its records become a text file.
//
// All kinds are decoded the same way. What differs between them stands in a Decoder; scripts that run the decoders know
// each kind's messages and results, so the differences are kept.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "shared/counted_records.h"

namespace mcserver::decoders {

// A number in front of the records.
struct HeaderNumber {
  size_t size;
  const char *unreadable;  // format of the message, which takes the input path
};

// Two lines in front of the records: formats that take the number that ends the header, and how many records the size
// of the file would make.
struct Summary {
  const char *state;
  const char *count;
};

// Where records are read to, in memory that is asked for once, and what becomes of each.
struct Records {
  uint32_t size;     // of one
  bool all_at_once;  // room for the whole file, or for one record
  void *(*next_slot)(uint8_t *memory);
  void (*count)(uint8_t *memory);
  void (*append)(const char *output_path, const void *record);
};

// RAID records are laid out like a reply, with its wrapping count: the slots of a long file are used again.
template <typename Header, typename Record, auto append>
constexpr Records records_as_in_a_reply() {
  using Layout = CountedRecords<Header, Record>;
  return {
      .size = sizeof(Record),
      .all_at_once = true,
      .next_slot = [](uint8_t *memory) -> void * { return Layout::next_slot(memory); },
      .count = [](uint8_t *memory) { ++Layout::header_of(memory)->count; },
      .append = [](const char *path, const void *record) { append(path, static_cast<const Record *>(record)); },
  };
}

template <typename Record, auto append>
constexpr Records records_one_by_one() {
  return {
      .size = sizeof(Record),
      .all_at_once = false,
      .next_slot = [](uint8_t *memory) -> void * { return memory; },
      .count = [](uint8_t *) {},
      .append = [](const char *path, const void *record) { append(path, static_cast<const Record *>(record)); },
  };
}

// A number of the header is at most this long.
inline constexpr size_t kLongestNumber = sizeof(uint32_t);

enum class AllocationTime { kBeforeHeader, kBeforeRecords };
enum class ResultOf { kMessage, kClosing };

struct DecoderRow {
  const char *store_path;                // its last part is the name of input and output
  const char *unopened;                  // formats of messages, which take the input path
  const char *unknown_size;              // null: nothing is said, and closing the input gives the result
  std::span<const HeaderNumber> header;  // the last one, if it is a byte, is the subsystem's state
  const Summary *summary;                // null for none
  AllocationTime allocation;
  ResultOf failed_allocation;
  Records records;
};

// Does a message take the path, and nothing else but errno?
constexpr bool takes_path(std::string_view format) {
  const size_t conversion = format.find("%s");
  if (conversion == format.npos) return false;
  const std::string_view rest = format.substr(conversion + 2);
  const size_t next = rest.find('%');
  return format.find('%') == conversion && (next == rest.npos || rest.substr(next) == "%m\n");
}

// Does a line take a number, and nothing else?
constexpr bool takes_number(std::string_view format) {
  return std::ranges::count(format, '%') == 1 && format.find("%d") != format.npos;
}

// Not constant: a decoder that comes to one of these does not compile.
void message_does_not_take_the_path_alone();
void summary_line_does_not_take_one_number();
void number_of_the_header_is_too_long();

// The only way to decode is with a row whose formats fit what they are printed with, and whose header fits where it is
// read to.
struct Decoder : DecoderRow {
  consteval explicit Decoder(const DecoderRow &row) : DecoderRow(row) {
    if (!takes_path(unopened)) message_does_not_take_the_path_alone();
    if (unknown_size && !takes_path(unknown_size)) message_does_not_take_the_path_alone();
    for (const HeaderNumber &number : header) {
      if (!takes_path(number.unreadable)) message_does_not_take_the_path_alone();
      if (number.size > kLongestNumber) number_of_the_header_is_too_long();
    }
    if (summary && !(takes_number(summary->state) && takes_number(summary->count)))
      summary_line_does_not_take_one_number();
  }
};

// Decodes the kind's file in one directory into a file in the other one, which is replaced. Prints what goes wrong to
// standard error. The result is that of closing the input or of printing the message, as the kind has it; -35 for a
// null directory.
int decode(const Decoder &decoder, const char *input_dir, const char *output_dir);

}  // namespace mcserver::decoders
