#include "mcstore/inventory/source.h"

#include <fmt/core.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string_view>
#include <utility>

#include "mcserver_storage.h"
#include "mcstore/source/failure.h"
#include "mcstore/source/reply.h"
#include "mcstore/source/store_file.h"
#include "mcstore/source/xml_reply.h"

namespace mcstore {
namespace {

void set(KindInventory &inventory, KindStatus status, std::string error) {
  inventory.status = status;
  inventory.error = std::move(error);
}

// A link that leads nowhere is something, too, and not what should be there.
bool exists(const std::string &path) {
  struct stat about = {};
  return lstat(path.c_str(), &about) == 0 || errno != ENOENT;
}

// A simulation needs neither lock nor store file, so what is missing is no failure yet. The lock is taken all the same:
// the plug-in would wait for it without an end.
class LockedStore {
 public:
  LockedStore(const Place &place, const Kind &kind, Patience &patience) {
    const std::string path = place.real(kind.store_path);
    const bool has_store = !kind.store_path.empty() && exists(path);
    const std::string lock_path = place.real(kind.lock_path);
    if (has_store || exists(lock_path)) lock_.emplace(lock_path, patience);
    if (has_store) file_.emplace(path, kind);
  }

  StoreFile *file() { return file_ ? &*file_ : nullptr; }

 private:
  std::optional<StoreLock> lock_;
  std::optional<StoreFile> file_;
};

// What is wrong with a file that could be read; nothing when it is as it should be.
std::string damage(const Kind &kind, const StoreFile &file) {
  if (!file.has_header()) return fmt::format("{} ends within its header", file.path());
  if (file.left_over() != 0)
    return fmt::format("{} ends within a record: {} whole ones, and {} bytes", file.path(), file.records(),
                       file.left_over());
  if (file.announced() && *file.announced() != file.records())
    return fmt::format("{} announces {} records and holds {}", file.path(), *file.announced(), file.records());
  if (file.records() > kind.greatest_count)
    return fmt::format("{} holds {} records, and a reply can count {}", file.path(), file.records(),
                       kind.greatest_count);
  return {};
}

// A capture remembers the times of its files; copies of it need not.
struct timespec modified(const StoreFile &file, const Kind &kind, const Place &place) {
  if (place.captured())
    for (const CapturedFile &captured : place.captured()->files)
      if (captured.path == kind.store_path) return captured.modified;
  return file.modified();
}

void take_facts(KindInventory &inventory, const StoreFile &file, const Place &place) {
  inventory.store = StoreFacts{.path = std::string(inventory.kind->store_path),
                               .modified = modified(file, *inventory.kind, place),
                               .size = file.size(),
                               .announced = file.announced(),
                               .records = file.records(),
                               .left_over = file.left_over()};
  std::string problem = damage(*inventory.kind, file);
  if (!problem.empty()) set(inventory, KindStatus::kDamaged, std::move(problem));
}

bool is_same_device(const Kind &kind, Record one, Record other) {
  return std::ranges::all_of(kind.identity, [&](std::string_view name) {
    const Field &field = kind.fields[mcserver::find_row(kind.fields, name)];
    return std::ranges::equal(bytes_of(one, field), bytes_of(other, field));
  });
}

// Keeps what the file holds wherever the plug-in has completed a record.
void keep_completed(KindInventory &inventory, StoreFile &file) {
  const Kind &kind = *inventory.kind;
  for (size_t i = 0; i < inventory.size(); ++i) {
    const auto stored = file.next();
    if (!stored) return;
    const Record record = inventory.device(i).record();
    if (!std::ranges::equal(*stored, record) && is_same_device(kind, *stored, record))
      inventory.stored[i] = {stored->begin(), stored->end()};
  }
}

void take_packed(KindInventory &inventory, Record bytes, StoreFile *file) {
  Reply reply = parse_reply(*inventory.kind, bytes);
  inventory.records = std::move(reply.records);
  inventory.state = reply.state;
  if (reply.is_simulated) {
    set(inventory, KindStatus::kSimulated, "the devices are made up: the plug-in simulates them");
    inventory.store.reset();
  } else if (file) {
    keep_completed(inventory, *file);
  }
}

// XML shows less of a record than there is, and may show it wrongly, so the values are the file's.
void take_xml(KindInventory &inventory, Record bytes, StoreFile &file) {
  while (const auto record = file.next())
    inventory.records.insert(inventory.records.end(), record->begin(), record->end());
  inventory.state = file.state();
  const std::string_view text(reinterpret_cast<const char *>(bytes.data()), bytes.size());
  const std::string problem = contradiction(*inventory.kind, text, inventory.records);
  if (!problem.empty())
    inventory.notes.push_back(fmt::format("the plug-in's reply is not clear ({}), so the values are those of {}",
                                          problem, inventory.kind->store_path));
}

void take_reply(KindInventory &inventory, Record bytes, StoreFile *file) {
  if (inventory.kind->layout)
    take_packed(inventory, bytes, file);
  else if (file)
    take_xml(inventory, bytes, *file);
}

// What the plug-in says of a file that is known to be damaged is not worth telling.
void set_failure(KindInventory &inventory, const PluginFailure &failure, bool has_store, const std::string &path) {
  if (has_store || failure.status() == MC_STORE_REPLY_TOO_LARGE) {
    if (inventory.status != KindStatus::kDamaged)
      set(inventory, KindStatus::kUnreadable, fmt::format("{}: {}", path, failure.what()));
    return;
  }
  const bool has_file = !inventory.kind->store_path.empty();
  set(inventory, KindStatus::kAbsent,
      has_file ? fmt::format("{} does not exist", path) : "there is no store file for this kind");
}

// Did the plug-in read another file than this one? A lock does not keep anybody from putting a new file in its place.
bool is_replaced(const KindInventory &inventory, const StoreFile *file) {
  const bool counts =
      file && inventory.status == KindStatus::kFine && file->records() <= inventory.kind->greatest_count;
  return counts && inventory.size() != file->records();
}

}  // namespace

Source::Source(const SourceOptions &options)
    : place_(options.from), patience_(options.patience), session_(options.session, place_) {}

KindInventory Source::read(const Kind &kind) {
  constexpr int kTries = 5;
  for (int tries = 0; tries < kTries; ++tries)
    if (std::optional<KindInventory> inventory = read_once(kind)) return *std::move(inventory);
  KindInventory inventory(kind);
  set(inventory, KindStatus::kUnreadable,
      fmt::format("{} was replaced by another file each time it was read", place_.real(kind.store_path)));
  return inventory;
}

std::optional<KindInventory> Source::read_once(const Kind &kind) {
  KindInventory inventory(kind);
  bool has_store = false;
  try {
    LockedStore store(place_, kind, patience_);
    has_store = store.file() != nullptr;
    if (has_store) take_facts(inventory, *store.file(), place_);
    take_reply(inventory, session_.call(kind.full_entry_point), store.file());
    if (is_replaced(inventory, store.file())) return {};
  } catch (const PluginFailure &failure) {
    set_failure(inventory, failure, has_store, place_.real(kind.store_path));
  } catch (const std::runtime_error &failure) {
    set(inventory, KindStatus::kUnreadable, failure.what());
  }
  return inventory;
}

Record Source::reply(const Kind &kind) {
  LockedStore store(place_, kind, patience_);
  return session_.call(kind.full_entry_point);
}

}  // namespace mcstore
