// The base of the tests of a controller's dump.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "host/printed.h"
#include "raid/controllers/controller_test.h"
#include "raid/controllers/full_record.h"

namespace tests {

inline constexpr char kRecordMarker[] = "/var/mctool_stordebug";
inline constexpr char kRecordDump[] = "/var/mctool_stordebug.txt";

inline Bytes full_record() { return full_controller_record(Bytes::Order::kLittle); }

// A supported controller without anything else.
inline Bytes empty_record() { return Bytes::repeated(kControllerSize, 0).put(104, Bytes().u8(1)); }

class ControllerDump : public ControllerTest {
 protected:
  void print(const void *record, FILE *stream) {
    PLUGIN(print_ctlrinfo)(static_cast<const StorCtlrInfo *>(record), stream);
  }

  // Other bytes follow the record; they are not to be shown.
  std::string text_of(const Bytes &record) {
    const Bytes memory = record + Bytes::repeated(64, '!');
    return printed([&](FILE *stream) { print(memory.data(), stream); });
  }

  // The lines of the dump that contain this.
  std::vector<std::string> lines_with(const std::string &part, const Bytes &record) {
    std::istringstream text(text_of(record));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
      if (line.find(part) != std::string::npos) lines.push_back(line);
    return lines;
  }

  void append(const Bytes &record) { print(record.data(), nullptr); }

  void make_marker(const std::string &path) {
    files.write_text(path, "");
    forget_calls();
  }
};

}  // namespace tests
