// mcstore watch: a line for each event.

#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <system_error>

#include "mcstore/commands/change_format.h"
#include "mcstore/commands/command.h"
#include "mcstore/commands/options.h"
#include "mcstore/commands/output.h"
#include "mcstore/commands/validators.h"
#include "mcstore/source/store_watch.h"

namespace mcstore {
namespace {

using Clock = StoreWatch::Clock;
using Seconds = std::chrono::duration<double>;

struct WatchOptions {
  SourceOptions source;
  std::string kind = kAllKinds;
  double interval = 5;
  uint64_t count = 0;  // of events to end after; 0: of none
  std::optional<double> seconds = {};
  ChangeFormat format = ChangeFormat::kText;
};

// Every line is written at once, so that there is nothing left to do: not even while a lock is waited for.
void end_at_once(int) { _exit(kSuccess); }

// What is ignored stays so: a shell does that for the programs in its background.
void end_on_signals() {
  for (const int number : {SIGINT, SIGTERM})
    if (signal(number, end_at_once) == SIG_IGN) signal(number, SIG_IGN);
}

struct timespec now() {
  struct timespec time = {};
  clock_gettime(CLOCK_REALTIME, &time);
  return time;
}

// A kind, as it was seen last.
struct Seen {
  KindInventory last;
  KindInventory known;  // what devices are compared with, once they can be seen again
};

class Watcher {
 public:
  explicit Watcher(const WatchOptions &options) : options_(options), source_(options.source), watch_(source_.place()) {}

  // Returns the exit code.
  int run() {
    const Clock::time_point end = options_.seconds ? later(Clock::now(), *options_.seconds) : Clock::time_point::max();
    begin();
    while (!is_done() && Clock::now() < end) {
      const Woken woken = watch_.wait_until(std::min(end, later(Clock::now(), options_.interval)));
      if (woken == Woken::kByHangup) break;
      look();
    }
    return kSuccess;
  }

 private:
  static Clock::time_point later(Clock::time_point time, double seconds) {
    return time + std::chrono::duration_cast<Clock::duration>(Seconds(seconds));
  }

  void begin() {
    watch_.renew();
    for (const Kind *kind : chosen_kinds(options_.kind)) {
      const KindInventory inventory = source_.read(*kind);
      seen_.push_back({inventory, inventory});
      if (inventory.status == KindStatus::kUnreadable || inventory.status == KindStatus::kDamaged)
        complain(fmt::format("{}: {}", kind->name, inventory.error), kFailure);
    }
    std::vector<const KindInventory *> inventories;
    for (const Seen &seen : seen_) inventories.push_back(&seen.last);
    print(shown_beginning(inventories, now(), options_.format));
  }

  void look() {
    watch_.renew();
    for (Seen &seen : seen_) {
      const KindInventory inventory = source_.read(*seen.last.kind);
      tell(status_changes(seen.last, seen.known, inventory));
      tell(data_changes(seen.known, inventory));
      seen = {inventory, remembered(seen.known, inventory)};
    }
  }

  void tell(const std::vector<Change> &changes) {
    for (const Change &change : changes) {
      if (is_done()) return;
      print(shown_event(change, now(), options_.format));
      ++told_;
    }
  }

  bool is_done() const { return options_.count != 0 && told_ == options_.count; }

  const WatchOptions &options_;
  Source source_;
  StoreWatch watch_;
  std::vector<Seen> seen_ = {};
  uint64_t told_ = 0;
};

int watch(const WatchOptions &options) {
  end_on_signals();
  try {
    return Watcher(options).run();
  } catch (const std::system_error &error) {
    if (error.code() != std::errc::broken_pipe) throw;
    return kSuccess;  // whoever read the events has enough
  }
}

}  // namespace

void add_watch(CLI::App &app, Action &action) {
  constexpr double kShortest = 0.05;
  constexpr double kDay = 86400;
  const auto options = std::make_shared<WatchOptions>();
  CLI::App &command = *app.add_subcommand("watch", "Print a line whenever a device comes, goes or changes");
  add_kind(command, options->kind)->capture_default_str();
  command
      .add_option("--interval", options->interval, "Look after so many seconds, even if no write of a file was noticed")
      ->type_name("S")
      ->check(number_between(kShortest, kDay))
      ->capture_default_str();
  command.add_option("--count", options->count, "End after so many events; 0: never")
      ->type_name("N")
      ->check(whole_number_between(0, UINT64_MAX))
      ->capture_default_str();
  command.add_option("--for", options->seconds, "End after so many seconds")
      ->type_name("S")
      ->check(number_between(kShortest, 366 * kDay));
  add_change_format(command, options->format);
  add_source_options(command, options->source);
  command.footer(
      "Examples:\n"
      "  mcstore watch\n"
      "  mcstore watch drives --count 1\n"
      "  mcstore watch --from DIR --format ndjson");
  command.callback([options, &action] { action = [options] { return watch(*options); }; });
}

}  // namespace mcstore
