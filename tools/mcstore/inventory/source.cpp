#include "mcstore/inventory/source.h"

#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string_view>

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

bool exists(const std::string &path) { return access(path.c_str(), F_OK) == 0 || errno != ENOENT; }

// A simulation needs neither lock nor store file, so what is missing is no failure yet. The lock is taken all the same:
// the plug-in would wait for it without an end.
class LockedStore {
 public:
  LockedStore(const Place &place, const Kind &kind, const Patience &patience) {
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

StoreFacts facts_of(const Kind &kind, const StoreFile &file) {
  return {.path = std::string(kind.store_path),
          .modified = file.modified(),
          .size = file.size(),
          .announced = file.announced(),
          .records = file.records(),
          .left_over = file.left_over()};
}

// What is wrong with a file that could be read; nothing when it is as it should be.
std::string damage(const Kind &kind, const StoreFacts &store) {
  if (store.left_over != 0)
    return fmt::format("{} ends within a record: {} whole ones, and {} bytes", store.path, store.records,
                       store.left_over);
  if (store.announced && *store.announced != store.records)
    return fmt::format("{} announces {} records and holds {}", store.path, *store.announced, store.records);
  if (store.records > kind.greatest_count)
    return fmt::format("{} holds {} records, and a reply can count {}", store.path, store.records, kind.greatest_count);
  return {};
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
  if (reply.is_simulated)
    set(inventory, KindStatus::kSimulated, "the devices are made up: the plug-in simulates them");
  else if (file)
    keep_completed(inventory, *file);
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
  const Kind &kind = *inventory.kind;
  if (kind.layout)
    take_packed(inventory, bytes, file);
  else if (file)
    take_xml(inventory, bytes, *file);
  if (!file || inventory.status == KindStatus::kSimulated) return;

  inventory.store = facts_of(kind, *file);
  const std::string problem = damage(kind, *inventory.store);
  if (!problem.empty()) set(inventory, KindStatus::kDamaged, problem);
}

}  // namespace

Source::Source(const SourceOptions &options)
    : place_(options.from), patience_(options.patience), session_(options.session, place_) {}

KindInventory Source::read(const Kind &kind) {
  KindInventory inventory(kind);
  bool has_store = false;
  try {
    LockedStore store(place_, kind, patience_);
    has_store = store.file() != nullptr;
    take_reply(inventory, session_.call(kind.full_entry_point), store.file());
  } catch (const PluginFailure &failure) {
    if (!has_store && failure.status() != MC_STORE_REPLY_TOO_LARGE)
      set(inventory, KindStatus::kAbsent,
          kind.store_path.empty() ? "there is no store file for this kind"
                                  : fmt::format("{} does not exist", place_.real(kind.store_path)));
    else
      set(inventory, KindStatus::kUnreadable, fmt::format("{}: {}", place_.real(kind.store_path), failure.what()));
  } catch (const Damaged &failure) {
    set(inventory, KindStatus::kDamaged, failure.what());
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
