#include "fuzz/host/target.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>

#include "mcserver_storage.h"

namespace fuzz {
namespace {

constexpr size_t kMostRecords = 260;  // enough for a count of eight bits to wrap
constexpr size_t kBeyond32Bits = size_t{1} << 32;

// Times of a file: those that a clock may show, and those for which there is no text.
constexpr time_t kTimes[] = {
    0, -1, 1, std::numeric_limits<int32_t>::max(), 253'402'300'800, 1LL << 56, std::numeric_limits<time_t>::max()};

class Story {
 public:
  Story(const Target &target, FuzzHost &host, Choices &choices)
      : target_(target), host_(host), choices_(choices), store_(target.header_size, '\0') {}

  void run();

 private:
  void add_record();
  void patch_store();
  void resize_store();
  void repeat_record();
  void drop_record();
  void switch_on();
  void switch_off();
  void set_time();
  void disturb() { host_.disturb(target_.facts.store_path, choices_); }
  void trace() { host_.set_trace(choices_); }
  void call();
  void help();

  size_t place_of_record();
  void write_files();
  void write_file(const std::string &path, bool exists, const std::string &content);

  const Target &target_;
  FuzzHost &host_;
  Choices &choices_;
  std::string store_;
  bool store_exists_ = true;
  bool lock_exists_ = true;
  time_t time_ = 1000;
};

// Where one of the records begins; the end of the file when there is none.
size_t Story::place_of_record() {
  const size_t header = std::min(target_.header_size, store_.size());
  const size_t records = (store_.size() - header) / target_.record_size;
  if (records == 0) return store_.size();
  return header + choices_.byte() % records * target_.record_size;
}

// Devices that differ little from one call to the next, so that some are known, modified and gone.
void Story::add_record() {
  std::string record(target_.record_size, static_cast<char>(choices_.byte()));
  for (const auto &member : target_.facts.identity) record[member.in_record] = static_cast<char>(choices_.below(4));
  record[target_.stamp] = static_cast<char>(choices_.below(4));
  store_ += record;
}

void Story::patch_store() {
  const size_t at = choices_.number();
  const std::string bytes = choices_.bytes(choices_.byte());
  if (at + bytes.size() > store_.size()) store_.resize(at + bytes.size());
  store_.replace(at, bytes.size(), bytes);
}

void Story::resize_store() { store_.resize(choices_.number()); }

// A few times; now and then as often as makes a count wrap, which takes its time.
void Story::repeat_record() {
  const std::string record = store_.substr(place_of_record(), target_.record_size);
  const uint8_t choice = choices_.byte();
  const size_t times = choice < kMostRecords - 10 ? choice % 4 : kMostRecords;
  for (size_t i = 0; i < times && store_.size() < kMostRecords * target_.record_size; ++i) store_ += record;
}

void Story::drop_record() { store_.erase(place_of_record(), target_.record_size); }

void Story::switch_on() {
  const char *const path = target_.switches[choices_.below(target_.switches.size())];
  host_.files.write(path, choices_.bytes(choices_.byte()), time_);
}

void Story::switch_off() {
  const size_t which = choices_.below(target_.switches.size() + 2);
  if (which < target_.switches.size()) return host_.files.remove(target_.switches[which]);
  bool &exists = which == target_.switches.size() ? store_exists_ : lock_exists_;
  exists = !exists;
}

void Story::set_time() { time_ = kTimes[choices_.below(std::size(kTimes))]; }

void Story::write_file(const std::string &path, bool exists, const std::string &content) {
  if (exists)
    host_.files.write(path, content, time_);
  else
    host_.files.remove(path);
}

void Story::write_files() {
  const std::string lock = target_.facts.lock_path;
  const std::string store = target_.facts.store_path;  // may be the lock itself
  if (lock != store) write_file(lock, lock_exists_, "");
  write_file(store, store_exists_, store_);
}

void Story::call() {
  write_files();
  enum Function { kFull, kDelta, kRetrieve, kFullOfHugeFile, kFunctions };
  const uint8_t which = choices_.below(kFunctions);
  if (which == kDelta) return host_.call_entry_point(target_.delta, 0, choices_);
  if (which == kRetrieve) {
    const int32_t delta = choices_.byte();
    const auto retrieve = [&](void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len) {
      return target_.retrieve(ctx, buf, bufsize, len, delta);
    };
    return host_.call_entry_point(retrieve, 0, choices_);
  }
  if (which == kFullOfHugeFile) host_.files.resize(target_.facts.store_path, kBeyond32Bits + choices_.number());
  const bool simulates = host_.files.exists(kSimulation);
  host_.call_entry_point(target_.full, simulates ? target_.simulated_beyond : 0, choices_);
}

void Story::help() {
  write_files();
  target_.help(host_, choices_);
}

void Story::run() {
  constexpr void (Story::*kStoreChanges[])() = {&Story::add_record, &Story::patch_store, &Story::resize_store,
                                                &Story::repeat_record, &Story::drop_record};
  constexpr void (Story::*kOthers[])() = {&Story::switch_on, &Story::switch_off, &Story::set_time, &Story::disturb,
                                          &Story::trace,     &Story::call,       &Story::help};
  while (!choices_.exhausted()) {
    const size_t step = choices_.below(std::size(kStoreChanges) + std::size(kOthers));
    if (step >= std::size(kStoreChanges)) {
      (this->*kOthers[step - std::size(kStoreChanges)])();
      continue;
    }
    (this->*kStoreChanges[step])();
    if (time_ < std::numeric_limits<time_t>::max()) ++time_;
  }
}

}  // namespace

int run(const Target &target, const uint8_t *data, size_t size) {
  static FuzzHost host;
  Choices choices(data, size);
  host.start_over();
  Story(target, host, choices).run();
  return 0;
}

}  // namespace fuzz
