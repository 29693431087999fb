#include "sweep/failures.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>

namespace tests {
namespace {

// The errnos of a function's manual, as far as a call like the plug-in's can give them.
struct Errnos {
  std::vector<int> told_apart;  // and one that stands for all that the plug-in does not tell apart
  std::vector<int> others;
  bool may_be_partial = false;  // an error may come after half of the work
  bool only_writes = false;
};

// What is written comes to the device now or later, so all that prints may fail alike.
const Errnos kWriting = {
    .told_apart = {ENOSPC}, .others = {EAGAIN, EBADF, EDQUOT, EFBIG, EINTR, EIO, ENOMEM, EPIPE}, .only_writes = true};
const Errnos kNone = {};  // neither a result nor errno tells of a failure

const std::map<std::string, Errnos> kErrnos = {
    {"fopen",
     {{ENOENT, EMFILE},
      {EACCES, EDQUOT, EINTR, EIO, EISDIR, ELOOP, ENAMETOOLONG, ENFILE, ENODEV, ENOMEM, ENOSPC, ENOTDIR, ENXIO,
       EOVERFLOW, EPERM, EROFS, ETXTBSY}}},
    {"stat", {{ENOENT}, {EACCES, EIO, ELOOP, ENAMETOOLONG, ENOMEM, ENOTDIR, EOVERFLOW}}},
    {"unlink", {{EACCES}, {EBUSY, EIO, EISDIR, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EPERM, EROFS}}},
    {"fileno", {{EBADF}, {}}},
    {"flock", {{ENOLCK}, {EBADF, EINTR, EINVAL, EWOULDBLOCK}}},
    {"fread", {{EIO}, {EAGAIN, EBADF, EINTR, EISDIR, ENOMEM, EOVERFLOW}, true}},
    {"fscanf", {{EIO}, {0, EAGAIN, EBADF, EILSEQ, EINTR, EINVAL, ENOMEM, ERANGE}}},
    {"rewind", {{EIO}, {EBADF, EINTR, ENXIO, EOVERFLOW, ESPIPE}}},
    {"fprintf", kWriting},
    {"printf", kWriting},
    {"fputs", kWriting},
    {"puts", kWriting},
    {"fflush", kWriting},
    {"fclose", kWriting},
    // A null result without an error is what realloc to no size gives.
    {"realloc", {{ENOMEM, 0}, {}}},
    {"malloc", {{ENOMEM}, {}}},
    {"calloc", {{ENOMEM}, {}}},
    {"localtime_r", {{EOVERFLOW}, {}}},
    {"syslog", kNone},
    // The host's own, which are seen beside libc's.
    {"memset_s", kNone},
    {"strncpy_s", kNone},
    {"memcpy_s", kNone},
};

// What a call that succeeds may leave in errno: what the plug-in asks for elsewhere.
constexpr int kLeftBehind[] = {ENOMEM, ENOENT};

std::vector<host::Verdict> verdicts(const std::string &function, const Errnos &errnos) {
  std::vector<host::Verdict> verdicts;
  for (const int error : errnos.told_apart) verdicts.push_back({.fails = true, .error = error});
  if (errnos.may_be_partial) verdicts.push_back({.fails = true, .error = EIO, .is_partial = true});
  if (function == "realloc") verdicts.push_back({.fails = false, .error = ENOMEM});  // the one that is judged by errno
  if (!is_everything_swept() || verdicts.empty()) return verdicts;

  for (const int error : errnos.others) verdicts.push_back({.fails = true, .error = error});
  for (const int error : kLeftBehind)
    if (function != "realloc" || error != ENOMEM) verdicts.push_back({.fails = false, .error = error});
  return verdicts;
}

}  // namespace

Amount amount() {
  static const std::map<std::string, Amount> kAmounts = {
      {"", Amount::kEveryday}, {"few", Amount::kFew}, {"all", Amount::kAll}, {"count", Amount::kCount}};
  const char *const wanted = getenv("MCS_SWEEP");
  return kAmounts.at(wanted ? wanted : "");
}

bool is_everything_swept() { return amount() == Amount::kAll || amount() == Amount::kCount; }

const std::vector<host::Verdict> &failures_of(const std::string &function) {
  static const auto failures = [] {
    std::map<std::string, std::vector<host::Verdict>> all;
    for (const auto &[name, errnos] : kErrnos) all[name] = verdicts(name, errnos);
    return all;
  }();
  return failures.at(function);
}

bool only_writes(const std::string &function) { return kErrnos.at(function).only_writes; }

std::string to_string(const Failure &failure) {
  const char *const name = failure.verdict.error == 0 ? "no errno" : strerrorname_np(failure.verdict.error);
  return failure.function + (failure.verdict.fails ? " fails" : " succeeds") +
         (failure.verdict.is_partial ? " half-way" : "") + " with " + name;
}

}  // namespace tests
