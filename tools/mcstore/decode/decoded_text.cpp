#include "mcstore/decode/decoded_text.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace mcstore {
namespace {

using File = std::unique_ptr<FILE, int (*)(FILE *)>;

// The lines that tell the subsystem's state and the number of records.
constexpr int kSummaryLines = 2;

bool skip_lines(FILE *text, int count) {
  for (int c = 0; count > 0 && c != EOF;) {
    c = getc(text);
    if (c == '\n') --count;
  }
  return count == 0;
}

std::string printed(RecordPrinter *print, std::span<const uint8_t> record) {
  char *text = nullptr;
  size_t size = 0;
  FILE *const stream = open_memstream(&text, &size);
  if (!stream) throw std::bad_alloc();
  print(record.data(), stream);
  const bool is_whole = fclose(stream) == 0;
  const std::unique_ptr<char, void (*)(void *)> owner(text, free);
  if (!is_whole) throw std::bad_alloc();
  return {text, size};
}

bool goes_on_with(FILE *text, const std::string &expected) {
  std::string found(expected.size(), '\0');
  return fread(found.data(), 1, found.size(), text) == found.size() && found == expected;
}

}  // namespace

Compared compare_text(const std::string &path, bool has_summary, StoreFile &store, RecordPrinter *print,
                      const std::function<void(uint64_t)> &on_record) {
  const uint64_t records = store.records();
  const File text(fopen(path.c_str(), "rb"), fclose);
  if (!text) return {.records = 0, .is_as_it_should_be = records == 0 && !has_summary};
  if (has_summary && !skip_lines(text.get(), kSummaryLines)) return {.records = 0, .is_as_it_should_be = false};

  for (uint64_t i = 0; i < records; ++i) {
    on_record(i);
    const auto record = store.next();
    if (!record || !goes_on_with(text.get(), printed(print, *record)))
      return {.records = i, .is_as_it_should_be = false};
  }
  return {.records = records, .is_as_it_should_be = getc(text.get()) == EOF};
}

// The system tells why when it is asked to take a byte more.
void refuse_if_unwritable(const std::string &path) {
  const bool was_there = access(path.c_str(), F_OK) == 0;
  const int fd = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  if (fd == -1) throw Undecodable("cannot write " + path);

  const off_t end = lseek(fd, 0, SEEK_END);
  const bool is_writable = write(fd, "\n", 1) == 1 && ftruncate(fd, end) == 0;
  const int error = errno;
  close(fd);
  if (!was_there) unlink(path.c_str());
  if (!is_writable) throw Undecodable(fmt::format("cannot write {}: {}", path, strerror(error)));
}

}  // namespace mcstore
