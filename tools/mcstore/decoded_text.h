// The text that a decoder has made of a store file, compared with what it should be.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

#include "mcstore/store_copy.h"

namespace mcstore {

// Prints a record, in file byte order, as the decoder does: the plug-in's own function for it.
using RecordPrinter = void(const void *record, FILE *stream);

struct Compared {
  uint64_t records;         // so many of the first ones are there to the last byte
  bool is_as_it_should_be;  // these are all, and there is nothing else
};

// Compares the text at `path` with the records that `store` still has to give. `on_record` is called before each, with
// how many have been compared. Throws Undecodable when the store cannot be read.
Compared compare_text(const std::string &path, bool has_summary, StoreCopy &store, RecordPrinter *print,
                      const std::function<void(uint64_t)> &on_record);

// Throws Undecodable if the file cannot be written to, now that it has not been written to in full. Leaves it as it is.
void refuse_if_unwritable(const std::string &path);

}  // namespace mcstore
