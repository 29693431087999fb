// What the plug-in says: trace lines for the host's developers, and system log lines for everybody.
//
// Log tooling keys on the function names and line numbers in these messages. They are identifiers that stay as they
// are, whatever becomes of the code; each stands at its site.
#pragma once

#include <syslog.h>

#include <cstdint>
#include <cstdio>

#include "mcserver_storage.h"

namespace mcserver {

// The host may change its variables at any time, so every site asks anew.
inline bool trace_is_on() { return use_cmclog == 0 && mc_debug_level > 2 && outfp != nullptr; }

// The file names that system log lines begin with, one for each family of devices.
inline constexpr char kStorageSource[] = "mcserver_storage.cpp";
inline constexpr char kNvmeSource[] = "mcserver_nvme.cpp";

// A time as a message shows it: its decimal value is printed with %lld, and its ctime text with %s. A time that has no
// text gives an empty one.
class CtimeText {
 public:
  explicit CtimeText(time_t time);
  const char *c_str() const { return text_; }

 private:
  char text_[64];
};

}  // namespace mcserver

// The prefix of a trace line; its arguments are the function name, the line number and the function name again.
#define TRACE_PREFIX "<%s: %d> [%s]"

// Macros, because the compiler checks a format against its arguments only when it is one literal, and because prefix
// and message must go out in one print: another writer of the same stream would come between two.
#define TRACE(function, line, format, ...)                                                      \
  do {                                                                                          \
    if (::mcserver::trace_is_on()) {                                                            \
      fprintf(outfp, TRACE_PREFIX format, function, line, function __VA_OPT__(, ) __VA_ARGS__); \
      fflush(outfp);                                                                            \
    }                                                                                           \
  } while (false)

#define SYSTEM_LOG(source, line, format, ...) syslog(LOG_INFO, "%s:%d:" format, source, line __VA_OPT__(, ) __VA_ARGS__)
