// A copy of a store file, read as its decoder reads it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "mcstore/kind.h"

namespace mcstore {

// A file without records to be read, or to be written; the message says why.
class Undecodable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class StoreCopy {
 public:
  // Opens the file and reads past its header. Throws Undecodable when it has no such header or cannot be read.
  StoreCopy(const std::string &path, const Kind &kind);

  // How many whole records there are, and how many bytes behind them.
  uint64_t records() const { return size_of_records_ / record_.size(); }
  uint64_t rest() const { return size_of_records_ % record_.size(); }

  // The next record, until the next call; nothing at the end, or when the file has become shorter. Throws Undecodable
  // when it cannot be read.
  std::optional<std::span<const uint8_t>> next();

 private:
  bool read(std::span<uint8_t> bytes);

  std::string path_;
  std::unique_ptr<FILE, int (*)(FILE *)> file_;
  std::vector<uint8_t> record_;
  uint64_t size_of_records_ = 0;
};

}  // namespace mcstore
