// The machine as a model sees it: files, libc's answers, the host's trace and the system log, all plain values.
//
// A model makes the calls that the interface prescribes, in the prescribed order. A fault that was planted meets the
// same call of the model as of the plug-in.
#pragma once

#include <cstdint>
#include <ctime>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "host/reply_buffer.h"
#include "model/choices.h"

namespace model {

struct File {
  Bytes content;
  int64_t modified = 0;  // seconds since 1970
  bool is_directory = false;
};

// The nth call of a libc function, counted from 1, fails with this errno; and each one after it, if it fails on.
struct Fault {
  std::string function;
  int nth;
  int error;
  bool fails_on;
};

struct FileFacts {
  uint64_t size;
  int64_t modified;
};

// An open file. What it gains while it is read is not read.
struct Stream {
  Bytes content;
  size_t position = 0;
  bool at_end = false;  // a read came to the end
};

class World {
 public:
  // ------------------------------------------------------------------------- what a history decides
  std::map<std::string, File> files = {{"/var", {.content = {}, .modified = 0, .is_directory = true}}};
  std::vector<Fault> faults;
  int trace_level = 0;
  bool uses_cmclog = false;
  bool has_trace_stream = true;
  tests::HostReplyBuffer *host = nullptr;  // is asked for more also when it passed no buffer

  // Begins a call: the faults are counted from here.
  void begin_call();

  // ------------------------------------------------------------------------- what a model calls
  // Each of these is a libc call that may fail; error() then tells why.

  std::optional<FileFacts> stat(const std::string &path);
  bool exists(const std::string &path) { return stat(path).has_value(); }

  std::optional<Stream> open(const std::string &path);

  // Reads that many bytes. Fewer come at the end of the file, which another fread then finds; none when a read fails.
  Bytes read(Stream &stream, size_t size);

  // A single fread, which gives all of these bytes or none.
  std::optional<Bytes> read_whole(Stream &stream, size_t size);

  // unlink
  void remove(const std::string &path);

  // Any other call: flock, fileno, realloc... True when it works.
  bool works(const std::string &function);

  // errno, as the last of these calls left it.
  int error() const { return error_; }
  void clear_error() { error_ = 0; }

  // fopen with "a", the text, fclose. False, and nothing is written, when it cannot be opened.
  bool append(const std::string &path, const std::string &text);

  // A line for the host's stream, with its prefix, if the host wants traces.
  void trace(const std::string &function, int line, const std::string &message);

  // A line for the system log, with its prefix.
  void log(const std::string &file, int line, const std::string &message);

  // ------------------------------------------------------------------------- what came of it
  std::string traced;
  std::vector<std::string> logged;
  std::string printed_out;  // to the standard streams
  std::string printed_err;

 private:
  int error_ = 0;
  std::map<std::string, int> calls_;
};

// What any pointer prints as, other than a null one: it differs each time.
inline constexpr char kAnAddress[] = "(an address)";

// ctime's text in UTC, with its newline; empty where ctime gives none.
std::string time_text(int64_t time);

std::string printed(const char *format, ...) __attribute__((format(printf, 1, 2)));

// The text in these bytes up to its NUL, or all of them.
std::string text(const Bytes &bytes);

uint64_t little_endian(const Bytes &bytes, size_t offset, size_t width);

}  // namespace model
