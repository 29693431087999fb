#include "race/collector.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stdexcept>

#include "race/kinds.h"

namespace tests {
namespace {

int open_to_write(const StoreDirectory &files, const char *path) {
  const int fd = open(files.real(path).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (fd == -1) throw std::runtime_error(std::string("cannot open ") + path);
  return fd;
}

void set_size(int fd, size_t size) {
  if (ftruncate(fd, static_cast<off_t>(size)) != 0) throw std::runtime_error("cannot set a file's size");
}

void set_time(int fd, int64_t modified) {
  const struct timespec time = {.tv_sec = static_cast<time_t>(modified), .tv_nsec = 0};
  const struct timespec times[] = {time, time};
  if (futimens(fd, times) != 0) throw std::runtime_error("cannot set a file's time");
}

void write_at(int fd, const uint8_t *bytes, size_t size, size_t offset) {
  if (pwrite(fd, bytes, size, static_cast<off_t>(offset)) != static_cast<ssize_t>(size))
    throw std::runtime_error("cannot write");
}

template <typename Random>
size_t below(Random &random, size_t limit) {
  return std::uniform_int_distribution<size_t>(0, limit - 1)(random);
}

}  // namespace

// ---------------------------------------------------------------------------------------------------- under the lock

Collector::Collector(const StoreDirectory &files, std::span<const Kind> family, unsigned seed)
    : files_(files), family_(family), random_(seed) {
  std::filesystem::create_directories(files.real("/var"));
  write_next();
  thread_ = std::thread([this] { run(); });
}

Collector::~Collector() { stop(); }

void Collector::stop() {
  is_stopped_ = true;
  if (thread_.joinable()) thread_.join();
}

void Collector::run() {
  while (!is_stopped_) {
    write_next();
    std::this_thread::sleep_for(std::chrono::microseconds(below(random_, 500)));
  }
}

void Collector::write_next() {
  const Generation next = generation(finished_ + 1);
  const int lock = open_to_write(files_, family_.front().lock);
  if (flock(lock, LOCK_EX) != 0) throw std::runtime_error("cannot lock");
  begun_ = next.number;
  for (const Kind &kind : family_) {
    const int fd = open_to_write(files_, kind.store);
    write_torn(fd, store_file(kind, next));
    set_time(fd, next.modified());
    close(fd);
  }
  finished_ = next.number;
  flock(lock, LOCK_UN);
  close(lock);
}

// What was there before is written over, cut off first, or buried in rubbish.
void Collector::write_torn(int fd, const Bytes &content) {
  constexpr size_t kMostRubbish = 3000;
  constexpr size_t kMostInOneWrite = 2000;
  const size_t way = below(random_, 3);
  if (way == 0) set_size(fd, 0);
  if (way == 1) {
    const Bytes rubbish = Bytes::repeated(1 + below(random_, kMostRubbish), 0x7F);
    write_at(fd, rubbish.data(), rubbish.size(), content.size());
  }
  for (size_t offset = 0; offset < content.size();) {
    const size_t size = std::min(content.size() - offset, 1 + below(random_, kMostInOneWrite));
    write_at(fd, content.data() + offset, size, offset);
    offset += size;
    if (below(random_, 4) == 0) std::this_thread::yield();
  }
  set_size(fd, content.size());
}

// -------------------------------------------------------------------------------------------------- without the lock

LawlessCollector::LawlessCollector(const StoreDirectory &files, const Kind &kind, unsigned seed)

    : random_(seed), kind_(kind), fd_(open_to_write(files, kind.store)) {
  change_something();
  thread_ = std::thread([this] {
    while (!is_stopped_) change_something();
  });
}

LawlessCollector::~LawlessCollector() {
  is_stopped_ = true;
  thread_.join();
  close(fd_);
}

void LawlessCollector::change_something() {
  constexpr size_t kGenerations = 40;  // in whose stamps there is no byte of an unwritten buffer
  const size_t size = static_cast<size_t>(lseek(fd_, 0, SEEK_END));
  switch (below(random_, 8)) {
    case 0: {  // a whole inventory, as far as it goes, which may well be torn by what follows
      const Bytes content = store_file(kind_, generation(static_cast<uint32_t>(1 + below(random_, kGenerations))));
      write_at(fd_, content.data(), std::min(content.size(), kMostBytes), 0);
      break;
    }
    case 1:
      set_size(fd_, below(random_, size + 1));
      break;
    case 2:
      set_size(fd_, 0);
      break;
    case 3:
    case 4: {  // letters, which are no state, no text of XML and nothing that a buffer holds unwritten
      const Bytes more = Bytes::repeated(1 + below(random_, 3000), static_cast<uint8_t>('a' + below(random_, 26)));
      if (size + more.size() <= kMostBytes) write_at(fd_, more.data(), more.size(), size);
      break;
    }
    default: {
      const Bytes damage = Bytes::repeated(1 + below(random_, 40), static_cast<uint8_t>(below(random_, 3)));
      if (size > 0) write_at(fd_, damage.data(), damage.size(), below(random_, size));
    }
  }
  if (below(random_, 2) == 0) set_time(fd_, static_cast<int64_t>(changes_));
  changes_++;
  if (below(random_, 4) == 0) std::this_thread::yield();
}

}  // namespace tests
