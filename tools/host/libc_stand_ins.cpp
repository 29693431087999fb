// Compiled without the large-file, 64-bit-time and fortify macros: they rename the very functions defined here. Which
// of the names the plug-in uses depends on the system and on how it was compiled, so all of them are here.

#include "host/libc_stand_ins.h"

#include <dlfcn.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <syslog.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace host {
namespace {

thread_local LibcWatcher *watcher = nullptr;

}  // namespace

PluginScope::PluginScope(LibcWatcher &the_watcher) { watcher = &the_watcher; }
PluginScope::~PluginScope() { watcher = nullptr; }

HostScope::HostScope() : suspended_(std::exchange(watcher, nullptr)) {}
HostScope::~HostScope() { watcher = suspended_; }

namespace {

// One call on its way through. While it lives, what it calls itself is not seen.
class Call {
 public:
  explicit Call(const char *function, const char *detail = "") : entry_errno_(errno) {
    if (!scope_.suspended()) return;
    if (detail && detail[0] == '/') path_ = scope_.suspended()->resolve(detail);
    verdict_ = scope_.suspended()->before(function, detail ? detail : "");
    errno = entry_errno_;
  }

  bool fails() const { return verdict_.fails; }
  const char *path(const char *own) const { return path_.empty() ? own : path_.c_str(); }
  LibcWatcher *seen_by() const { return scope_.suspended(); }

  // The result, with errno as the verdict wants it.
  template <typename Result>
  Result end(Result result) const {
    if (verdict_.error != 0) errno = verdict_.error;
    return result;
  }

 private:
  HostScope scope_;
  int entry_errno_;
  Verdict verdict_;
  std::string path_;
};

template <typename Function>
Function *next_definition(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace
}  // namespace host

// Where a sanitizer is linked into the program itself, its checking versions have these names and nothing else leads
// to them; elsewhere they are null.
#define SANITIZER_VERSION(result, name, ...) extern "C" __attribute__((weak)) result __interceptor_##name(__VA_ARGS__);
SANITIZER_VERSION(FILE *, fopen, const char *, const char *)
SANITIZER_VERSION(FILE *, fopen64, const char *, const char *)
SANITIZER_VERSION(int, fclose, FILE *)
SANITIZER_VERSION(int, fflush, FILE *)
SANITIZER_VERSION(size_t, fread, void *, size_t, size_t, FILE *)
SANITIZER_VERSION(void *, malloc, size_t)
SANITIZER_VERSION(void *, calloc, size_t, size_t)
SANITIZER_VERSION(void *, realloc, void *, size_t)

// libc's own allocator by its second names: looking the first ones up would need memory.
extern "C" void *__libc_malloc(size_t);
extern "C" void *__libc_calloc(size_t, size_t);
extern "C" void *__libc_realloc(void *, size_t);

#define REAL(name) \
  (__interceptor_##name ? __interceptor_##name : host::next_definition<decltype(__interceptor_##name)>(#name))
#define NEXT(type, name) host::next_definition<type>(#name)
#define REAL_ALLOCATOR(name) (__interceptor_##name ? __interceptor_##name : __libc_##name)

using host::Call;

extern "C" {

// ----------------------------------------------------------------------------------------------------- streams

FILE *fopen(const char *path, const char *mode) {
  const Call call("fopen", path);
  return call.end(call.fails() ? nullptr : REAL(fopen)(call.path(path), mode));
}

FILE *fopen64(const char *path, const char *mode) {
  const Call call("fopen", path);
  return call.end(call.fails() ? nullptr : REAL(fopen64)(call.path(path), mode));
}

// Closes in any case: a stream is gone after fclose, even if it failed.
int fclose(FILE *stream) {
  const Call call("fclose");
  const int result = REAL(fclose)(stream);
  if (result != 0 && call.seen_by()) call.seen_by()->on_failed_close(errno);
  return call.end(call.fails() ? EOF : result);
}

int fflush(FILE *stream) {
  const Call call("fflush");
  return call.end(call.fails() ? EOF : REAL(fflush)(stream));
}

size_t fread(void *to, size_t size, size_t count, FILE *stream) {
  const Call call("fread");
  return call.end(call.fails() ? 0 : REAL(fread)(to, size, count, stream));
}

size_t __fread_chk(void *to, size_t to_size, size_t size, size_t count, FILE *stream) {
  const Call call("fread");
  return call.end(call.fails() ? 0
                               : NEXT(size_t(void *, size_t, size_t, size_t, FILE *), __fread_chk)(to, to_size, size,
                                                                                                   count, stream));
}

int fileno(FILE *stream) noexcept {
  const Call call("fileno");
  return call.end(call.fails() ? -1 : NEXT(int(FILE *), fileno)(stream));
}

static int scan(FILE *stream, const char *format, va_list arguments) {
  const Call call("fscanf");
  return call.end(call.fails() ? EOF : vfscanf(stream, format, arguments));
}

// Also __isoc99_fscanf and __isoc23_fscanf, one of which is what <stdio.h> makes of fscanf.
#define FSCANF(name)                                    \
  int name(FILE *stream, const char *format, ...) {     \
    va_list arguments;                                  \
    va_start(arguments, format);                        \
    const int result = scan(stream, format, arguments); \
    va_end(arguments);                                  \
    return result;                                      \
  }
FSCANF(__isoc99_fscanf)
FSCANF(__isoc23_fscanf)

static int print(FILE *stream, const char *format, va_list arguments) {
  const int error = errno;  // what a %m prints
  const Call call("fprintf");
  errno = error;
  return call.end(call.fails() ? -1 : vfprintf(stream, format, arguments));
}

int fprintf(FILE *stream, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = print(stream, format, arguments);
  va_end(arguments);
  return result;
}

int __fprintf_chk(FILE *stream, int, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = print(stream, format, arguments);
  va_end(arguments);
  return result;
}

// -------------------------------------------------------------------------------------------- files and descriptors

int unlink(const char *path) noexcept {
  const Call call("unlink", path);
  return call.end(call.fails() ? -1 : NEXT(int(const char *), unlink)(call.path(path)));
}

int flock(int fd, int operation) noexcept {
  const Call call("flock", std::to_string(operation).c_str());
  return call.end(call.fails() ? -1 : NEXT(int(int, int), flock)(fd, operation));
}

#define STAT(name, type)                                                                              \
  int name(const char *__restrict path, type *__restrict out) noexcept {                              \
    const Call call("stat", path);                                                                    \
    return call.end(call.fails() ? -1 : NEXT(int(const char *, type *), name)(call.path(path), out)); \
  }
STAT(stat, struct stat)
STAT(stat64, struct stat64)
STAT(__stat64_time64, void)

// ------------------------------------------------------------------------------------------------------- memory

// The loader and the sanitizers allocate before anything of the program is set up, so the way past must be plain.

void *malloc(size_t size) noexcept {
  if (!host::watcher) return REAL_ALLOCATOR(malloc)(size);
  const Call call("malloc");
  return call.end(call.fails() ? nullptr : REAL_ALLOCATOR(malloc)(size));
}

void *calloc(size_t count, size_t size) noexcept {
  if (!host::watcher) return REAL_ALLOCATOR(calloc)(count, size);
  const Call call("calloc");
  return call.end(call.fails() ? nullptr : REAL_ALLOCATOR(calloc)(count, size));
}

void *realloc(void *block, size_t size) noexcept {
  if (!host::watcher) return REAL_ALLOCATOR(realloc)(block, size);
  const Call call("realloc");
  return call.end(call.fails() ? nullptr : REAL_ALLOCATOR(realloc)(block, size));
}

// ------------------------------------------------------------------------------------------------ time and log

#define CTIME(name, type)                                                             \
  char *name(const type *time) noexcept {                                             \
    const Call call("ctime");                                                         \
    return call.end(call.fails() ? nullptr : NEXT(char *(const type *), name)(time)); \
  }
CTIME(ctime, time_t)
CTIME(__ctime64, void)

static void log_line(int priority, const char *format, va_list arguments) {
  const int error = errno;  // what a %m prints
  const Call call("syslog");
  if (!call.seen_by()) return vsyslog(priority, format, arguments);

  char line[4096];
  errno = error;
  vsnprintf(line, sizeof line, format, arguments);
  call.seen_by()->on_syslog(priority, line);
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
