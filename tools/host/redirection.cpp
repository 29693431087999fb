// Compiled without the large-file, 64-bit-time and fortify macros: they rename the very functions defined here. Which
// of the names the plug-in uses depends on the system and on how it was compiled, so all of them are here.

#include "host/redirection.h"

#include <sys/stat.h>
#include <syslog.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <utility>

#include "host/real_libc.h"

namespace host {
namespace {

thread_local constinit Redirection *redirection = nullptr;

}  // namespace

BelowRoot::BelowRoot(std::string root) : root_(std::move(root)) {}

std::optional<std::string> BelowRoot::resolve(const char *, const std::string &path) {
  return path.starts_with('/') ? root_ + path : path;
}

void BelowRoot::log(int, const std::string &line) {
  fprintf(stderr, "syslog: %s%s", line.c_str(), line.ends_with('\n') ? "" : "\n");
}

PluginScope::PluginScope(Redirection &the_redirection) { redirection = &the_redirection; }
PluginScope::~PluginScope() { redirection = nullptr; }

bool in_plugin() { return redirection; }

HostScope::HostScope() : suspended_(std::exchange(redirection, nullptr)) {}
HostScope::~HostScope() { redirection = suspended_; }

namespace {

// Where a call's path leads. While it lives, what is called on the way there is not seen.
class Destination {
 public:
  Destination(const char *function, const char *path) : path_(path) {
    if (!scope_.suspended()) return;
    resolved_ = scope_.suspended()->resolve(function, path ? path : "");
    path_ = resolved_ ? resolved_->c_str() : nullptr;
    exists_ = resolved_.has_value();
  }

  bool exists() const { return exists_; }
  const char *path() const { return path_; }

 private:
  HostScope scope_;
  const char *path_;
  bool exists_ = true;
  std::optional<std::string> resolved_;
};

}  // namespace
}  // namespace host

SANITIZER_VERSION(FILE *, fopen, const char *, const char *)
SANITIZER_VERSION(FILE *, fopen64, const char *, const char *)

extern "C" {

#define FOPEN(name)                                                               \
  FILE *name(const char *path, const char *mode) {                                \
    const host::Destination destination("fopen", path);                           \
    return destination.exists() ? REAL(name)(destination.path(), mode) : nullptr; \
  }
FOPEN(fopen)
FOPEN(fopen64)

#define STAT(name, type)                                                                               \
  int name(const char *__restrict path, type *__restrict out) noexcept {                               \
    const host::Destination destination("stat", path);                                                 \
    return destination.exists() ? NEXT(int(const char *, type *), name)(destination.path(), out) : -1; \
  }
STAT(stat, struct stat)
STAT(stat64, struct stat64)
STAT(__stat64_time64, void)

static void log_line(int priority, const char *format, va_list arguments) {
  const int error = errno;  // what a %m prints
  const host::HostScope scope;
  errno = error;
  if (!scope.suspended()) return vsyslog(priority, format, arguments);

  char line[4096];
  vsnprintf(line, sizeof line, format, arguments);
  scope.suspended()->log(priority, line);
}

void syslog(int priority, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  log_line(priority, format, arguments);
  va_end(arguments);
}

void __syslog_chk(int priority, int, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  log_line(priority, format, arguments);
  va_end(arguments);
}

}  // extern "C"
