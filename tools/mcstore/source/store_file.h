// A store file, read record by record.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "mcstore/kinds/kind.h"
#include "mcstore/kinds/value.h"

namespace mcstore {

class StoreFile {
 public:
  // Opens the file, which must be a regular one, and reads its header, as far as it is there. Throws Missing or
  // Unreadable.
  StoreFile(const std::string &path, const Kind &kind);

  const std::string &path() const { return path_; }
  uint64_t size() const { return static_cast<uint64_t>(about_.st_size); }
  struct timespec modified() const {
    return about_.st_mtim;
  }

  // Is the header there to its end? Without one there are no records.
  bool has_header() const { return has_header_; }

  // What the header says, where the kind's has it: the subsystem's state, and how many records follow.
  std::optional<uint64_t> state() const { return in_header(kind_.stored_state); }
  std::optional<uint64_t> announced() const { return in_header(kind_.stored_count); }

  // How many whole records there are, and how many bytes behind them.
  uint64_t records() const { return size_of_records() / record_.size(); }
  uint64_t left_over() const { return has_header_ ? size_of_records() % record_.size() : size(); }

  // The next record, until the next call; nothing at the end, or when the file has become shorter. Throws Unreadable.
  std::optional<Record> next();

 private:
  uint64_t size_of_records() const { return has_header_ ? size() - header_.size() : 0; }
  std::optional<uint64_t> in_header(const std::optional<Field> &field) const;
  bool read(std::vector<uint8_t> &bytes);

  const Kind &kind_;
  std::string path_;
  std::unique_ptr<FILE, int (*)(FILE *)> file_;
  struct stat about_ = {};
  bool has_header_ = false;
  std::vector<uint8_t> header_;
  std::vector<uint8_t> record_;
};

}  // namespace mcstore
