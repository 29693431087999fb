// The retrievals of every kind of device, in every circumstance: whatever is disturbed, the reply is one that an
// undisturbed host may get too, and what the plug-in remembers is either what it was or what it should be.

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "nvme/nvme_bytes.h"
#include "raid/bbus/bbu_bytes.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"
#include "raid/raid_names.h"
#include "raid/virtual_drives/virtual_drive_bytes.h"
#include "sweep/scene.h"

namespace tests {
namespace {

using testing::AnyOfArray;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// What a reply's header and the slots behind it hold where nothing is written.
struct Unwritten {
  uint8_t header;
  uint8_t slot;
};
constexpr Unwritten kRoomy = {kUntouched, kUntouched};

// A kind of device, with three inventories that its collector has written one after the other, and what the host must
// hear of them. From the first to the second one, a device stays, one is modified, one is gone, and there are more than
// the lists had room for.
struct SweptKind {
  const char *full;  // the entry points
  const char *delta;
  const char *retrieval;  // what they call
  const char *lock;
  const char *store;
  std::vector<const char *> markers;
  std::vector<const char *> dumps;
  int32_t no_room;     // the result when the host refuses to grow the buffer
  int32_t empty_file;  // the result for a file of no bytes
  uint32_t enough;     // room for every reply
  CallOptions tight;   // makes it ask for room as often as it may
  Unwritten tight_unwritten;

  Bytes before;
  Bytes after;
  Bytes later;
  Bytes (*all)(Unwritten);   // of the second inventory
  Bytes (*news)(Unwritten);  // from the first to the second
  Bytes no_news;             // from the second to the second
  Bytes later_news;          // from the second to the third

  // The length that a reply's own count gives; null for XML.
  uint32_t (*length_of)(const Bytes &reply);

  bool is_nvme() const { return !length_of; }
};

template <typename Device>
Bytes reported(const std::vector<Device> &devices) {
  Bytes bytes;
  for (const Device &device : devices) bytes += device.reported();
  return bytes;
}

// ------------------------------------------------------------------------------------------------------ controllers

constexpr uint8_t kStarting = 1;
constexpr uint8_t kRunning = 2;

// The text of a controller that is not supported is short.
Controller terse(size_t number, uint32_t stamp = 1) {
  Controller controller = numbered(number, stamp);
  controller.is_supported = 0;
  return controller;
}

SweptKind swept_controllers() {
  static const std::vector<Controller> after = {terse(1), terse(2, 2), numbered(3), terse(4), terse(6)};
  return {
      .full = "mc_get_store_ctrls",
      .delta = "mc_delta_store_ctrls",
      .retrieval = "get_store_ctrls",
      .lock = kControllerStore,
      .store = kControllerStore,
      .markers = {"/var/mctool_stordebug", "/var/mctool_ctlrdebug"},
      .dumps = {"/var/mctool_stordebug.txt", "/var/mctool_ctlrdebug.txt"},
      .no_room = -13,
      .empty_file = -37,
      // Room for the file, and for the gone ones once more.
      .enough = 10000,
      .tight = {.size = kControllerHeaderSize, .growth = {Growth::kInPlace, Growth::kMove}},
      .tight_unwritten = {kUntouched, kUntouchedAfterGrowth},
      .before = controller_file(kStarting, {terse(0), terse(1), terse(2), terse(5)}),
      .after = controller_file(kRunning, after),
      .later = controller_file(kRunning, {terse(2, 3), numbered(3)}),
      .all = [](Unwritten unwritten) { return controller_header(kRunning, 5, unwritten.header) + reported(after); },
      .news =
          [](Unwritten unwritten) {
            const Bytes slot = Bytes::repeated(kControllerSize, unwritten.slot);
            return controller_header(kRunning, 6, unwritten.header) +
                   reported<Controller>({terse(2, 2), numbered(3), terse(4), terse(6)}) + gone(numbered(0), slot) +
                   gone(numbered(5), slot);
          },
      .no_news = controller_header(kRunning, 0),
      .later_news = controller_header(kRunning, 4) + terse(2, 3).reported() + gone(numbered(1), numbered(3).stored()) +
                    gone(numbered(4), untouched_slot()) + gone(numbered(6), untouched_slot()),
      .length_of = [](const Bytes &reply) { return controller_reply_size(reply[4]); },
  };
}

// --------------------------------------------------------------------------------------------------- physical drives

// Announced in the other byte order they are one, so the lists begin with one entry.
constexpr uint32_t kAnnounced = 256;

SweptKind swept_drives() {
  static const std::vector<Drive> after = {numbered_drive(1), numbered_drive(2, 2), numbered_drive(3)};
  return {
      .full = "mc_get_store_phydrives",
      .delta = "mc_delta_store_phydrives",
      .retrieval = "get_store_phydrives",
      .lock = kStorageLock,
      .store = kDriveStore,
      .markers = {"/var/mctool_stordebug", "/var/mctool_pddebug"},
      .dumps = {"/var/mctool_stordebug.txt", "/var/mctool_pddebug.txt"},
      .no_room = -13,
      .empty_file = -37,
      .enough = 128000,
      .tight = {.size = kDriveHeaderSize, .growth = {Growth::kMove}},
      .tight_unwritten = {kUntouchedAfterGrowth, kUntouchedAfterGrowth},
      .before = drive_file(kAnnounced, {numbered_drive(0), numbered_drive(1), numbered_drive(2)}),
      .after = drive_file(kAnnounced, after),
      .later = drive_file(kAnnounced, {numbered_drive(2, 3), numbered_drive(3)}),
      .all = [](Unwritten unwritten) { return drive_header(kAnnounced, 3, unwritten.header) + reported(after); },
      .news =
          [](Unwritten unwritten) {
            return drive_header(kAnnounced, 3, unwritten.header) +
                   reported<Drive>({numbered_drive(2, 2), numbered_drive(3)}) +
                   gone_drive(numbered_drive(0), Bytes::repeated(kDriveSize, unwritten.slot));
          },
      .no_news = {},
      .later_news = drive_header(kAnnounced, 2) + numbered_drive(2, 3).reported() +
                    gone_drive(numbered_drive(1), numbered_drive(3).stored()),
      .length_of = [](const Bytes &reply) { return drive_reply_size(reply[6]); },
  };
}

// ---------------------------------------------------------------------------------------------------- virtual drives

SweptKind swept_virtual_drives() {
  static const std::vector<VirtualDrive> after = {volume(1), volume(2, 0x02000002), volume(3)};
  return {
      .full = "mc_get_store_virtdrives",
      .delta = "mc_delta_store_virtdrives",
      .retrieval = "get_store_virtdrives",
      .lock = kStorageLock,
      .store = kVirtualDriveStore,
      .markers = {"/var/mctool_stordebug", "/var/mctool_vddebug"},
      .dumps = {"/var/mctool_stordebug.txt", "/var/mctool_vddebug.txt"},
      .no_room = -13,
      .empty_file = 0,
      .enough = 70000,
      .tight = {.size = kVirtualDriveHeaderSize, .growth = {Growth::kMove}},
      .tight_unwritten = {kUntouchedAfterGrowth, kUntouchedAfterGrowth},
      .before = virtual_drive_file({volume(0), volume(1)}) + volume(2).stored(),
      .after = virtual_drive_file(after) + volume(4).stored(),
      .later = virtual_drive_file({volume(2, 0x03000003), volume(3)}),
      .all =
          [](Unwritten unwritten) {
            return virtual_drive_header(4, unwritten.header) + reported(after) + volume(4).reported();
          },
      .news =
          [](Unwritten unwritten) {
            return virtual_drive_header(4, unwritten.header) +
                   reported<VirtualDrive>({volume(2, 0x02000002), volume(3), volume(4)}) +
                   gone_virtual_drive(volume(0), Bytes::repeated(kVirtualDriveSize, unwritten.slot));
          },
      .no_news = {},
      .later_news = virtual_drive_header(3) + volume(2, 0x03000003).reported() +
                    gone_virtual_drive(volume(1), volume(3).skipped()) + gone_virtual_drive(volume(4)),
      .length_of = [](const Bytes &reply) { return length_of(reply[3]); },
  };
}

// ------------------------------------------------------------------------------------------------------------- BBUs

SweptKind swept_bbus() {
  static const std::vector<Bbu> after = {bbu_of(1, 2), bbu_of(2), bbu_of(3)};
  return {
      .full = "mc_get_store_bbu",
      .delta = "mc_delta_store_bbu",
      .retrieval = "get_store_bbu",
      .lock = kStorageLock,
      .store = kBbuStore,
      .markers = {"/var/mctool_stordebug", "/var/mctool_bbudebug"},
      .dumps = {"/var/mctool_stordebug.txt", "/var/mctool_bbudebug.txt"},
      .no_room = -13,
      .empty_file = 0,
      .enough = 4000,
      .tight = {.size = kBbuHeaderSize, .growth = {Growth::kMove}},
      .tight_unwritten = {kUntouchedAfterGrowth, kUntouchedAfterGrowth},
      .before = bbu_file({bbu_of(0), bbu_of(1)}),
      .after = bbu_file(after),
      .later = bbu_file({bbu_of(2, 3), bbu_of(3)}),
      .all =
          [](Unwritten unwritten) {
            Bytes reply = bbu_header(3, unwritten.header);
            for (const Bbu &bbu : after) reply += with_flash_module(bbu.reported());
            return reply;
          },
      .news =
          [](Unwritten unwritten) {
            Bytes reply = bbu_header(3, unwritten.header);
            for (const Bbu &bbu : after) reply += with_flash_module(bbu.reported());
            return reply;
          },
      .no_news = bbu_header(0),
      .later_news = bbu_header(1) + with_flash_module(bbu_of(2, 3).reported()),
      .length_of = [](const Bytes &reply) { return bbu_reply_size(reply[3]); },
  };
}

// ------------------------------------------------------------------------------------------------------------- NVMe

constexpr uint8_t kPoweringOn = 3;
constexpr uint8_t kPowered = 4;

Bytes bytes_of(const std::string &text) { return Bytes().text(text, text.size()); }

SweptKind swept_nvme_controllers() {
  const auto controller = [](const char *name) { return NvmeController{.name = name}; };
  return {
      .full = "mc_get_nvme_controller",
      .delta = "mc_event_nvme_controller",
      .retrieval = "get_nvme_controller_info",
      .lock = kNvmeControllerStore,
      .store = kNvmeControllerStore,
      .markers = {},
      .dumps = {},
      .no_room = -4,
      .empty_file = -37,
      .enough = 10000,
      .tight = {.size = 1, .growth = {Growth::kMove}},
      .tight_unwritten = kRoomy,
      .before = nvme_controller_file(kPoweringOn, {controller("A"), controller("B")}),
      .after = nvme_controller_file(kPowered, {controller("B"), controller("C"), controller("D")}),
      .later = nvme_controller_file(kPowered, {controller("C"), controller("D")}),
      .all =
          [](Unwritten) {
            return bytes_of(controller_summary(3) + plain_controller_xml("B") + plain_controller_xml("C") +
                            plain_controller_xml("D"));
          },
      // Their time stamps are not remembered, so each is told again.
      .news =
          [](Unwritten) {
            return bytes_of(controller_summary(4) + plain_controller_xml("B") + plain_controller_xml("C") +
                            plain_controller_xml("D") + plain_controller_xml("A", "Deleted", "", 0));
          },
      .no_news = bytes_of(controller_summary(3) + plain_controller_xml("B") + plain_controller_xml("C") +
                          plain_controller_xml("D")),
      .later_news = bytes_of(controller_summary(3) + plain_controller_xml("C") + plain_controller_xml("D") +
                             plain_controller_xml("B", "Deleted", "", 0)),
      .length_of = nullptr,
  };
}

NvmeDrive in_slot(const char *slot, uint32_t stamp = 1) { return {.slot = slot, .stamp = stamp}; }

// What is said of a drive that is gone, over an image of zeros.
std::string gone_xml(const char *slot) {
  return NvmeDrive{.slot = slot,
                   .controller_name = "",
                   .product_name = "",
                   .firmware = "",
                   .vendor = "",
                   .temperature = 0,
                   .description = "",
                   .life_used = 0,
                   .life_left = 0,
                   .performance = 0,
                   .power_on_hours = 0,
                   .throttle = 0,
                   .shutdown = 0}
      .xml("Deleted");
}

SweptKind swept_nvme_drives() {
  return {
      .full = "mc_get_nvme_phy_drive",
      .delta = "mc_event_nvme_phy_drive",
      .retrieval = "get_nvme_phy_drive_info",
      .lock = kNvmeControllerStore,
      .store = kNvmeDriveStore,
      .markers = {},
      .dumps = {},
      .no_room = -4,
      .empty_file = -37,
      .enough = 10000,
      .tight = {.size = 1, .growth = {Growth::kMove}},
      .tight_unwritten = kRoomy,
      .before = nvme_drive_file(kPoweringOn, {in_slot("A"), in_slot("B")}),
      .after = nvme_drive_file(kPowered, {in_slot("B", 2), in_slot("C"), in_slot("D")}),
      .later = nvme_drive_file(kPowered, {in_slot("C", 3), in_slot("D", 3)}),
      .all =
          [](Unwritten) {
            return bytes_of(drive_summary(3) + in_slot("B").xml() + in_slot("C").xml() + in_slot("D").xml());
          },
      .news =
          [](Unwritten) {
            return bytes_of(drive_summary(4) + in_slot("B").xml() + in_slot("C").xml() + in_slot("D").xml() +
                            gone_xml("A"));
          },
      .no_news = {},
      .later_news = bytes_of(drive_summary(3) + in_slot("C").xml() + in_slot("D").xml() + gone_xml("B")),
      .length_of = nullptr,
  };
}

// ------------------------------------------------------------------------------------------------------ circumstances

enum class StoreFile { kRewritten, kUnchanged, kMissing, kUnlockable, kEmpty, kCutOff };

struct Circumstances {
  const char *name;
  StoreFile file = StoreFile::kRewritten;
  bool is_first = false;  // of all calls
  bool is_loud = false;   // with the trace and all dumps
  bool has_room = true;   // or the host must be asked for it
  bool is_granted = true;
  bool has_buffer = true;
  bool is_simulated = false;
};

const Circumstances kFirst = {.name = "first call", .is_first = true};
const Circumstances kFirstLoud = {
    .name = "first call, room to ask for, trace and dumps", .is_first = true, .is_loud = true, .has_room = false};
const Circumstances kLater = {.name = "later call, room to ask for", .has_room = false};
const Circumstances kLaterLoud = {
    .name = "later call, room to ask for, trace and dumps", .is_loud = true, .has_room = false};
const Circumstances kRefused = {
    .name = "room refused, trace and dumps", .is_loud = true, .has_room = false, .is_granted = false};
const Circumstances kUnchanged = {.name = "unchanged file", .file = StoreFile::kUnchanged};
const Circumstances kMissing = {.name = "no store file, trace", .file = StoreFile::kMissing, .is_loud = true};
const Circumstances kUnlockable = {.name = "no file to lock, trace", .file = StoreFile::kUnlockable, .is_loud = true};
const Circumstances kEmpty = {.name = "empty file", .file = StoreFile::kEmpty};
const Circumstances kCutOff = {.name = "file cut off", .file = StoreFile::kCutOff};
const Circumstances kNoBuffer = {.name = "no buffer, trace", .is_loud = true, .has_buffer = false};
const Circumstances kSimulated = {.name = "simulation, room to ask for", .has_room = false, .is_simulated = true};
const Circumstances kSimulationRefused = {.name = "simulation, room refused, trace",
                                          .is_loud = true,
                                          .has_room = false,
                                          .is_granted = false,
                                          .is_simulated = true};

// What a failing call to a function may make of an entry point's result, if not the result that it has anyway. What
// only prints, closes or tells the time changes nothing.
std::vector<int32_t> results_of(const std::string &function) {
  if (function == "fopen") return {-35, -37};
  if (function == "fileno" || function == "flock") return {-35};
  if (function == "stat" || function == "fread") return {-37};
  if (function == "realloc") return {-35};
  if (function == "malloc") return {-13, 35};
  if (function == "calloc") return {-35, -4};
  return {};
}

class RetrievalScene : public Scene {
 public:
  // A `flag` makes it the retrieval that is called, and not the entry point.
  RetrievalScene(const SweptKind &kind, const Circumstances &circumstances, bool is_delta, bool is_direct)
      : kind_(kind), circumstances_(circumstances), is_delta_(is_delta), is_direct_(is_direct) {
    host.files.write(kind_.lock, Bytes().u8(kRunning), 500);
    if (kind_.store == std::string(kBbuStore)) host.files.write(kFlashModuleImage, flash_module_image());
    if (!circumstances_.is_first) {
      store(kind_.before, 1000);
      host.call(kind_.full, {.size = kind_.enough});
    }
    set();
    if (circumstances_.is_loud) be_loud();
  }

  Outcome act() override {
    CallOptions options = circumstances_.has_room ? CallOptions{.size = kind_.enough} : kind_.tight;
    if (!circumstances_.is_granted) options.growth = {Growth::kRefuse};
    // A simulation may be written to the buffer that was passed in.
    if (circumstances_.is_simulated && circumstances_.is_granted) options.growth = {Growth::kInPlace};
    if (!circumstances_.has_buffer) return without_buffer();
    return outcome_of(is_direct_ ? retrieve(options) : host.call(is_delta_ ? kind_.delta : kind_.full, options));
  }

  bool goes_unnoticed(const Failure &failure) const override {
    const bool is_taken_for_a_failure = failure.function == "realloc" && failure.verdict.error == ENOMEM;
    if (!failure.verdict.fails) return !is_taken_for_a_failure;
    constexpr std::array kSayOnly = {"fprintf", "fputs", "fflush", "fclose", "localtime_r"};
    return std::ranges::count(kSayOnly, failure.function) > 0;
  }

  void check_undisturbed(const Outcome &outcome) override {
    EXPECT_EQ(outcome.result, expected_result());
    if (const Bytes *const answer = expected_answer()) {
      EXPECT_EQ(outcome.answer, *answer);
    }
  }

  void check_disturbed(const Outcome &outcome, const Outcome &undisturbed, const Failure &failure) override {
    std::vector<int32_t> results = results_of(failure.function);
    results.push_back(undisturbed.result);
    results.push_back(0);  // of a dump or a marker, or a simulation that does not take place
    EXPECT_THAT(results, Contains(outcome.result));
    if (outcome.result != 0) {
      EXPECT_EQ(outcome.length, circumstances_.has_buffer ? 0 : undisturbed.length);
    } else if (outcome.length != 0 && kind_.length_of) {
      EXPECT_EQ(outcome.length, circumstances_.is_simulated ? outcome.length : kind_.length_of(outcome.answer));
    }
    if (outcome.result == 0 && outcome.length == 0) {
      EXPECT_TRUE(undisturbed.length == 0 || kind_.no_news.size() == 0) << "there is no reply";
    }
  }

  std::string go_on(Next next, const Outcome &outcome, const Failure *failure) override {
    be_quiet();
    host.files.remove(kSimulationMarker);
    host.files.write(kind_.lock, Bytes().u8(kRunning), 500);
    store(kind_.after, 2500);
    if (next == Next::kDelta) check_baseline(outcome, failure);
    // A null list without an error is no failure: it is exchanged like any other, and the next call copes with it too.
    if (failure && failure->verdict.fails && failure->verdict.error == 0) host.call(kind_.full, {.size = kind_.enough});
    host.trace();
    host.system_log();

    EXPECT_EQ(host.call(kind_.full, {.size = kind_.enough}).bytes(), kind_.all(kRoomy));
    EXPECT_THAT(host.trace(), Not(HasSubstr(kind_.retrieval)));
    EXPECT_THAT(host.system_log(), IsEmpty());

    std::string shown;
    if (circumstances_.is_loud) {
      be_loud();
      host.call(kind_.full, {.size = kind_.enough});
      for (const char *dump : kind_.dumps) shown += host.files.read(dump);
      be_quiet();
    }
    store(kind_.later, 3000);
    EXPECT_EQ(host.call(kind_.delta, {.size = kind_.enough}).bytes(), kind_.later_news);
    shown += host.trace();
    for (const std::string &line : host.system_log()) shown += line;
    return shown;
  }

 private:
  // The file of the kind. Where that is the lock as well, it holds both.
  void store(const Bytes &content, int64_t modified) { host.files.write(kind_.store, content, modified); }

  void set() {
    switch (circumstances_.file) {
      case StoreFile::kUnchanged:
        break;
      case StoreFile::kRewritten:
        store(kind_.after, 2000);
        break;
      case StoreFile::kMissing:
        host.files.remove(kind_.store);
        break;
      case StoreFile::kUnlockable:
        host.files.remove(kind_.lock);
        break;
      case StoreFile::kEmpty:
        store(Bytes(), 2000);
        break;
      case StoreFile::kCutOff:
        store(kind_.after.slice(0, kind_.after.size() - 10), 2000);
        break;
    }
    if (circumstances_.is_simulated) host.files.write_text(kSimulationMarker, "");
  }

  void be_loud() {
    for (const char *marker : kind_.markers) host.files.write_text(marker, "");
    for (const char *dump : kind_.dumps) host.files.remove(dump);
    host.trace_at(3);
  }
  // With the trace, which must be silent then.
  void be_quiet() {
    for (const char *marker : kind_.markers) host.files.remove(marker);
    host.trace_at(3);
  }

  Reply retrieve(const CallOptions &options) {
    HostReplyBuffer buffer(options.size, options.growth);
    Reply reply{.status = 0, .length = kUnwrittenLength, .buffer = {}, .requests = {}};
    const auto function = host.plugin(static_cast<decltype(&get_store_ctrls)>(nullptr), kind_.retrieval);
    reply.status = function(static_cast<host::ReplyOwner *>(&buffer), buffer.bytes(), buffer.size(), &reply.length,
                            is_delta_ ? 1 : 0);
    reply.buffer = Bytes(std::vector<uint8_t>(buffer.bytes(), buffer.bytes() + buffer.size()));
    return reply;
  }

  Outcome without_buffer() {
    Outcome outcome = {.result = 0, .length = kUnwrittenLength};
    const auto function =
        host.plugin(static_cast<decltype(&mc_get_store_ctrls)>(nullptr), is_delta_ ? kind_.delta : kind_.full);
    outcome.result = function(nullptr, nullptr, kind_.enough, &outcome.length);
    return outcome;
  }

  static Outcome outcome_of(const Reply &reply) {
    return {reply.status, reply.length, reply.status == 0 ? reply.bytes() : Bytes()};
  }

  int32_t expected_result() const {
    if (!circumstances_.has_buffer) return -35;
    if (!circumstances_.is_granted) return kind_.no_room;
    switch (circumstances_.file) {
      case StoreFile::kMissing:
      case StoreFile::kUnlockable:
        return -37;
      case StoreFile::kEmpty:
        return kind_.empty_file;
      default:
        return 0;
    }
  }

  // Null where the result is all that is looked at here.
  const Bytes *expected_answer() {
    if (circumstances_.file != StoreFile::kRewritten || circumstances_.is_simulated || expected_result() != 0)
      return nullptr;
    const Unwritten unwritten = circumstances_.has_room ? kRoomy : kind_.tight_unwritten;
    answer_ = is_delta_ && !circumstances_.is_first ? kind_.news(unwritten) : kind_.all(unwritten);
    return &answer_;
  }

  // What the plug-in remembers shows in a delta.
  void check_baseline(const Outcome &outcome, const Failure *failure) {
    const Bytes delta = host.call(kind_.delta, {.size = kind_.enough}).bytes();
    if (is_baseline_unclear(outcome, failure)) return;

    const Bytes since_before = circumstances_.is_first ? kind_.all(kRoomy) : kind_.news(kRoomy);
    std::vector<Bytes> possible = {has_read_all(outcome, failure) ? kind_.no_news : since_before};
    if (failure && !goes_unnoticed(*failure)) {
      // A list that was lost matches nothing.
      if (failure->function.ends_with("alloc") && outcome.result == -35) possible.push_back(kind_.all(kRoomy));
      // Without a buffer, the result does not tell how far an NVMe kind came.
      if (kind_.is_nvme() && !circumstances_.has_buffer) possible.push_back(kind_.no_news);
    }
    EXPECT_THAT(delta, AnyOfArray(possible));
  }

  // Was less read than there is, or something else?
  bool is_baseline_unclear(const Outcome &outcome, const Failure *failure) const {
    if (circumstances_.is_simulated || circumstances_.file == StoreFile::kEmpty ||
        circumstances_.file == StoreFile::kCutOff)
      return true;
    if (!failure || !failure->verdict.fails) return false;
    return failure->verdict.error == 0 || (outcome.result != -37 && reads(failure->function));
  }
  static bool reads(const std::string &function) { return function == "fread" || function == "rewind"; }

  // NVMe kinds remember what they read even if they then cannot answer.
  bool has_read_all(const Outcome &outcome, const Failure *failure) const {
    if (circumstances_.file != StoreFile::kRewritten) return false;
    if (outcome.result == 0) return true;
    const bool is_as_ever = !failure || goes_unnoticed(*failure);
    return kind_.is_nvme() && (outcome.result == kind_.no_room || (!circumstances_.has_buffer && is_as_ever));
  }

  const SweptKind &kind_;
  const Circumstances &circumstances_;
  const bool is_delta_;
  const bool is_direct_;
  Bytes answer_;
};

const std::vector<SweptKind> &swept_kinds() {
  static const std::vector<SweptKind> kinds = {swept_controllers(), swept_drives(),           swept_virtual_drives(),
                                               swept_bbus(),        swept_nvme_controllers(), swept_nvme_drives()};
  return kinds;
}

}  // namespace

std::vector<Situation> situations_of_retrievals() {
  std::vector<Situation> situations;
  for (const SweptKind &kind : swept_kinds()) {
    const auto add = [&](bool is_delta, const Circumstances &circumstances, bool is_direct = false) {
      std::string name = is_direct ? kind.retrieval : is_delta ? kind.delta : kind.full;
      if (is_direct) name += is_delta ? " for changes" : " for everything";
      name += std::string(": ") + circumstances.name;
      situations.push_back({name, [&kind, &circumstances, is_delta, is_direct] {
                              return std::make_unique<RetrievalScene>(kind, circumstances, is_delta, is_direct);
                            }});
    };
    for (const bool is_delta : {false, true}) {
      for (const Circumstances *circumstances : {&kFirst, &kFirstLoud, &kLater, &kLaterLoud, &kRefused, &kUnchanged,
                                                 &kMissing, &kEmpty, &kCutOff, &kNoBuffer})
        add(is_delta, *circumstances);
      if (kind.store != std::string(kind.lock)) add(is_delta, kUnlockable);
      add(is_delta, kLater, true);
    }
    if (kind.is_nvme()) continue;
    for (const Circumstances *circumstances : {&kSimulated, &kSimulationRefused}) add(false, *circumstances);
  }
  return situations;
}

}  // namespace tests
