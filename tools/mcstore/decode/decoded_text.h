// The text that a decoder has made of a store file, compared with what it should be.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>

#include "mcstore/source/store_file.h"

namespace mcstore {

// A text that cannot be written, or is not what it should be; the message says why.
class Undecodable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Prints a record, in file byte order, as the decoder does: the plug-in's own function for it.
using RecordPrinter = void(const void *record, FILE *stream);

struct Compared {
  uint64_t records;         // so many of the first ones are there to the last byte
  bool is_as_it_should_be;  // these are all, and there is nothing else
};

// Compares the text at `path` with the records that `store` still has to give. `on_record` is called before each, with
// how many have been compared. Throws Unreadable when the store cannot be read.
Compared compare_text(const std::string &path, bool has_summary, StoreFile &store, RecordPrinter *print,
                      const std::function<void(uint64_t)> &on_record);

// Throws Undecodable if the file cannot be written to, now that it has not been written to in full. Leaves it as it is.
void refuse_if_unwritable(const std::string &path);

}  // namespace mcstore
