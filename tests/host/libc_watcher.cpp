#include <cerrno>
#include <string>

#include "host/bounded_copies.h"
#include "host/libc_stand_ins.h"
#include "mcserver_storage.h"

namespace host {

std::optional<std::string> LibcWatcher::resolve(const char *function, const std::string &path) {
  const int entry_errno = errno;
  std::string real = path.starts_with('/') ? real_path(path) : path;
  const Verdict verdict = before(function, path);
  errno = verdict.error != 0 ? verdict.error : entry_errno;
  if (verdict.fails) return {};
  return real;
}

void LibcWatcher::log(int priority, const std::string &line) {
  before("syslog", "");
  on_syslog(priority, line);
}

namespace {

// The watcher sees the bounded functions too: they mark where a gone device is written, and where a text is handed
// over. What is told of a call is its size, and the other one where a plug-in gives two different ones.
void tell_watcher(const char *function, size_t dest_size, size_t count) {
  const HostScope not_the_plugin;
  LibcWatcher *const watcher = watcher_suspended_by(not_the_plugin);
  if (!watcher) return;
  std::string sizes = std::to_string(count);
  if (count != dest_size) sizes += " of " + std::to_string(dest_size);
  watcher->before(function, sizes);
}

}  // namespace
}  // namespace host

int memset_s(void *dest, size_t dest_size, int fill, size_t count) {
  host::tell_watcher("memset_s", dest_size, count);
  return host::bounded_fill(dest, dest_size, fill, count);
}

int strncpy_s(char *dest, size_t dest_size, const char *src, size_t count) {
  host::tell_watcher("strncpy_s", dest_size, count);
  return host::bounded_text_copy(dest, dest_size, src, count);
}

int memcpy_s(void *dest, size_t dest_size, const void *src, size_t count) {
  host::tell_watcher("memcpy_s", dest_size, count);
  return host::bounded_copy(dest, dest_size, src, count);
}
