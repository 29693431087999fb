// Compiled without the large-file, 64-bit-time and fortify macros: they rename the very functions defined here. Which
// of the names the plug-in uses depends on the system and on how it was compiled, so all of them are here.

#include "host/libc_stand_ins.h"

#include <sys/file.h>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "host/real_libc.h"

namespace host {

LibcWatcher *watcher_suspended_by(const HostScope &scope) { return dynamic_cast<LibcWatcher *>(scope.suspended()); }

namespace {

// One call on its way through. While it lives, what it calls itself is not seen.
class Call {
 public:
  explicit Call(const char *function, const char *detail = "") : Call() {
    if (!watcher_) return;
    if (detail && detail[0] == '/') path_ = watcher_->real_path(detail);
    verdict_ = watcher_->before(function, detail ? detail : "");
    errno = entry_errno_;
  }
  // One that cannot fail, and is nothing to tell of.
  Call() : entry_errno_(errno), watcher_(watcher_suspended_by(scope_)) {}

  bool fails() const { return verdict_.fails; }
  bool is_partial() const { return verdict_.is_partial; }
  const char *path(const char *own) const { return path_.empty() ? own : path_.c_str(); }

  // Tells of a block that was taken, perhaps in place of another one.
  void *taken(void *block, const void *caller, void *given_back = nullptr) const {
    if (watcher_ && block) watcher_->on_memory(given_back, block, caller);
    return block;
  }
  void given_back(void *block, const void *caller) const {
    if (watcher_) watcher_->on_memory(block, nullptr, caller);
  }

  // The result, with errno as the verdict wants it.
  template <typename Result>
  Result end(Result result) const {
    if (verdict_.error != 0) errno = verdict_.error;
    return result;
  }

 private:
  HostScope scope_;
  int entry_errno_;
  LibcWatcher *watcher_;
  Verdict verdict_;
  std::string path_;
};

}  // namespace
}  // namespace host

// fopen, stat and syslog stand in redirection.cpp.

SANITIZER_VERSION(int, fclose, FILE *)
SANITIZER_VERSION(int, fflush, FILE *)
SANITIZER_VERSION(size_t, fread, void *, size_t, size_t, FILE *)
SANITIZER_VERSION(size_t, fwrite, const void *, size_t, size_t, FILE *)
SANITIZER_VERSION(int, fputs, const char *, FILE *)
SANITIZER_VERSION(int, puts, const char *)
SANITIZER_VERSION(void *, malloc, size_t)
SANITIZER_VERSION(void *, calloc, size_t, size_t)
SANITIZER_VERSION(void *, realloc, void *, size_t)
SANITIZER_VERSION(void, free, void *)

// libc's own allocator by its second names: looking the first ones up would need memory.
extern "C" void *__libc_malloc(size_t);
extern "C" void *__libc_calloc(size_t, size_t);
extern "C" void *__libc_realloc(void *, size_t);
extern "C" void __libc_free(void *);

#define REAL_ALLOCATOR(name) (__interceptor_##name ? __interceptor_##name : __libc_##name)
#define CALLER __builtin_return_address(0)

using host::Call;

extern "C" {

// ----------------------------------------------------------------------------------------------------- streams

// Closes in any case: a stream is gone after fclose, even if it failed.
int fclose(FILE *stream) {
  const Call call("fclose");
  const int result = REAL(fclose)(stream);
  return call.end(call.fails() ? EOF : result);
}

int fflush(FILE *stream) {
  const Call call("fflush");
  return call.end(call.fails() ? EOF : REAL(fflush)(stream));
}

// How many items of so many a read is to deliver.
static size_t delivered(const Call &call, size_t size, size_t count) {
  if (!call.fails()) return count;
  return call.is_partial() && size == 1 ? count / 2 : 0;
}

size_t fread(void *to, size_t size, size_t count, FILE *stream) {
  const Call call("fread");
  const size_t wanted = delivered(call, size, count);
  return call.end(wanted > 0 ? REAL(fread)(to, size, wanted, stream) : 0);
}

size_t __fread_chk(void *to, size_t to_size, size_t size, size_t count, FILE *stream) {
  const Call call("fread");
  const size_t wanted = delivered(call, size, count);
  return call.end(
      wanted > 0 ? NEXT(size_t(void *, size_t, size_t, size_t, FILE *), __fread_chk)(to, to_size, size, wanted, stream)
                 : 0);
}

// A failing one leaves the stream where it is.
void rewind(FILE *stream) {
  const Call call("rewind");
  if (!call.fails()) NEXT(void(FILE *), rewind)(stream);
  call.end(0);
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

static int print(const char *function, FILE *stream, const char *format, va_list arguments) {
  const int error = errno;  // what a %m prints
  const Call call(function);
  errno = error;
  return call.end(call.fails() ? -1 : vfprintf(stream, format, arguments));
}

#define PRINT(function, stream)                                    \
  {                                                                \
    va_list arguments;                                             \
    va_start(arguments, format);                                   \
    const int result = print(function, stream, format, arguments); \
    va_end(arguments);                                             \
    return result;                                                 \
  }
int fprintf(FILE *stream, const char *format, ...)
    PRINT("fprintf", stream) int __fprintf_chk(FILE *stream, int, const char *format, ...)
        PRINT("fprintf", stream) int printf(const char *format, ...)
            PRINT("printf", stdout) int __printf_chk(int, const char *format, ...) PRINT("printf", stdout)

    // Compilers turn a print of a constant text into whichever of these is shortest.

    int fputs(const char *text, FILE *stream) {
  const Call call("fputs");
  return call.end(call.fails() ? EOF : REAL(fputs)(text, stream));
}

int fputc(int character, FILE *stream) {
  const Call call("fputs");
  return call.end(call.fails() ? EOF : NEXT(int(int, FILE *), fputc)(character, stream));
}

size_t fwrite(const void *from, size_t size, size_t count, FILE *stream) {
  const Call call("fputs");
  return call.end(call.fails() ? 0 : REAL(fwrite)(from, size, count, stream));
}

int puts(const char *text) {
  const Call call("puts");
  return call.end(call.fails() ? EOF : REAL(puts)(text));
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

// ------------------------------------------------------------------------------------------------------- memory

// The loader and the sanitizers allocate before anything of the program is set up, so the way past must be plain.

void *malloc(size_t size) noexcept {
  if (!host::in_plugin()) return REAL_ALLOCATOR(malloc)(size);
  const Call call("malloc");
  return call.end(call.fails() ? nullptr : call.taken(REAL_ALLOCATOR(malloc)(size), CALLER));
}

void *calloc(size_t count, size_t size) noexcept {
  if (!host::in_plugin()) return REAL_ALLOCATOR(calloc)(count, size);
  const Call call("calloc");
  return call.end(call.fails() ? nullptr : call.taken(REAL_ALLOCATOR(calloc)(count, size), CALLER));
}

void *realloc(void *block, size_t size) noexcept {
  if (!host::in_plugin()) return REAL_ALLOCATOR(realloc)(block, size);
  const Call call("realloc");
  return call.end(call.fails() ? nullptr : call.taken(REAL_ALLOCATOR(realloc)(block, size), CALLER, block));
}

void free(void *block) noexcept {
  if (host::in_plugin()) Call().given_back(block, CALLER);
  REAL_ALLOCATOR(free)(block);
}

// -------------------------------------------------------------------------------------------------------------- time

// Cannot fail. What it allocates is libc's, and for good.
void tzset() noexcept {
  const host::HostScope not_the_plugin;
  NEXT(void(), tzset)();
}

#define LOCALTIME_R(name, type)                                                                               \
  struct tm *name(const type *__restrict time, struct tm *__restrict out) noexcept {                          \
    const Call call("localtime_r");                                                                           \
    return call.end(call.fails() ? nullptr : NEXT(struct tm * (const type *, struct tm *), name)(time, out)); \
  }
LOCALTIME_R(localtime_r, time_t)
LOCALTIME_R(__localtime64_r, void)

}  // extern "C"
