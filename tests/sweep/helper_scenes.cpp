// Whatever else the plug-in exports.

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "decoders/decoder_kinds.h"
#include "nvme/nvme_bytes.h"
#include "raid/bbus/bbu_bytes.h"
#include "raid/raid_names.h"
#include "sweep/scene.h"

namespace tests {
namespace {

Bytes bytes_of_text(const std::string &text) { return Bytes().text(text, text.size()); }

// A function that remembers nothing: what follows it is itself, once more.
struct Helper {
  std::string name;
  std::function<void(SweptHost &)> set;  // what there is
  std::function<Outcome(SweptHost &)> act;
  std::vector<std::string> unnoticed = {};  // which functions may fail without a difference
};

class HelperScene : public Scene {
 public:
  explicit HelperScene(const Helper &helper) : helper_(helper) {
    host.trace_at(3);
    helper_.set(host);
  }

  Outcome act() override {
    testing::internal::CaptureStdout();
    const Outcome outcome = helper_.act(host);
    testing::internal::GetCapturedStdout();
    return outcome;
  }

  bool goes_unnoticed(const Failure &failure) const override {
    return !failure.verdict.fails || std::ranges::count(helper_.unnoticed, failure.function) > 0;
  }

  // The platform is remembered as long as the plug-in is loaded.
  std::string go_on(Next, const Outcome &, const Failure *) override {
    host.unload();
    host.load();
    host.trace();
    host.system_log();
    const std::string shown = testing::PrintToString(act()) + host.trace();
    EXPECT_EQ(host.system_log().size(), 0u);
    return shown;
  }

 private:
  const Helper &helper_;
};

constexpr char kRecordMarker[] = "/var/mctool_stordebug";
constexpr char kOut[] = "/out";
constexpr char kProduct[] = "/etc/product";

void set_nothing(SweptHost &) {}

// What is in a file that the plug-in appends to, and no longer afterwards.
Outcome taken_from(SweptHost &host, const std::string &path, int32_t result = 0) {
  const std::string text = host.files.read(path);
  host.files.remove(path);
  return {.result = result, .answer = bytes_of_text(text)};
}

// A dump of a record or a list: `print` is called with it.
template <typename Function, typename... Arguments>
Helper dump(const std::string &function, const std::string &marker, Arguments... arguments) {
  return {.name = function + ": dump",
          .set = [marker](SweptHost &host) { host.files.write_text(marker, ""); },
          .act =
              [=](SweptHost &host) {
                host.plugin(static_cast<Function *>(nullptr), function)(arguments...);
                return taken_from(host, marker + ".txt");
              }};
}

template <typename Record>
const Record *record_of(const DecoderKind &kind) {
  return reinterpret_cast<const Record *>(kind.record.data());
}

template <typename Record>
std::vector<Helper> record_file(const std::string &function, const DecoderKind &kind) {
  const auto append = [function](const Record *record) {
    return [=](SweptHost &host) {
      host.plugin(static_cast<void (*)(const char *, const Record *)>(nullptr), function)(kOut, record);
      return taken_from(host, kOut);
    };
  };
  return {{function + ": a record", set_nothing, append(record_of<Record>(kind)), {"puts", "fflush", "fclose"}},
          {function + ": no record", set_nothing, append(nullptr), {"puts", "fclose"}}};
}

// To a stream of the host's, which stays open.
template <typename Record>
Helper to_stream(const std::string &function, const Bytes &record) {
  return {.name = function + ": to a stream",
          .set = set_nothing,
          .act =
              [=](SweptHost &host) {
                FILE *const stream = fopen(host.files.real(kOut).c_str(), "w");
                host.plugin(static_cast<void (*)(const Record *, FILE *)>(nullptr), function)(
                    reinterpret_cast<const Record *>(record.data()), stream);
                fclose(stream);
                return taken_from(host, kOut);
              },
          .unnoticed = {"fflush"}};
}

// Two lists without anything in common: what is gone is looked for in an index, or without one.
template <typename Summary>
std::vector<Summary> summaries(uint8_t fill) {
  std::vector<Summary> list(3);
  memset(list.data(), fill, list.size() * sizeof(Summary));
  return list;
}

template <typename Summary>
Helper gone_devices(const std::string &function) {
  return {.name = function + ": three are gone",
          .set = set_nothing,
          .act =
              [=](SweptHost &host) {
                const auto cur = summaries<Summary>('c');
                const auto cached = summaries<Summary>('o');
                std::vector<uint8_t> reply(32768);
                host.plugin(
                    static_cast<void (*)(uint8_t *, uint16_t, const Summary *, uint16_t, const Summary *)>(nullptr),
                    function)(reply.data(), 3, cur.data(), 3, cached.data());
                return Outcome{.answer = Bytes(reply)};
              },
          .unnoticed = {"malloc"}};
}

template <typename Record, typename Summary>
Helper comparison(const std::string &function) {
  return {.name = function + ": a new one", .set = set_nothing, .act = [=](SweptHost &host) {
            const auto cached = summaries<Summary>('o');
            const Record record = {};
            return Outcome{.result =
                               host.plugin(static_cast<int32_t (*)(const Record *, const Summary *, uint16_t)>(nullptr),
                                           function)(&record, cached.data(), 3)};
          }};
}

Helper rendering(const std::string &function, const Bytes &image) {
  return {.name = function + ": a device", .set = set_nothing, .act = [=](SweptHost &host) {
            std::vector<char> out(4096);
            auto size = static_cast<uint32_t>(out.size());
            host.plugin(static_cast<decltype(&xmlize_nvme_controller)>(nullptr), function)(image.data(), out.data(),
                                                                                           &size);
            return Outcome{.length = size, .answer = bytes_of_text(out.data())};
          }};
}

Helper rendering_without_room(const std::string &function, const Bytes &image) {
  return {.name = function + ": no room, trace",
          .set = set_nothing,
          .act =
              [=](SweptHost &host) {
                char out[1];
                uint32_t size = sizeof out;
                host.plugin(static_cast<decltype(&xmlize_nvme_controller)>(nullptr), function)(image.data(), out,
                                                                                               &size);
                return Outcome{.length = size};
              },
          .unnoticed = {"fprintf", "fflush"}};
}

Helper locking(const char *name, const char *path, bool there_is_one) {
  return {.name = std::string("getlock_and_open_file and unlock_and_close_file: ") + name,
          .set =
              [=](SweptHost &host) {
                host.files.write(kStorageLock, Bytes().u8(2));
                if (path && there_is_one) host.files.write(path, Bytes().u8(1));
              },
          .act =
              [=](SweptHost &host) {
                struct stat about = {};
                int32_t fd = -1;
                FILE *lock_stream = nullptr;
                FILE *data_stream = nullptr;
                const int32_t result =
                    host.PLUGIN(getlock_and_open_file)(&about, &fd, &lock_stream, &data_stream, path);
                if (result != 0) return Outcome{.result = result};
                EXPECT_EQ(data_stream != nullptr, path != nullptr);
                const int closed = host.PLUGIN(unlock_and_close_file)(fd, lock_stream, data_stream);
                return Outcome{.result = closed, .length = static_cast<uint32_t>(about.st_size)};
              },
          .unnoticed = {"fprintf", "fflush"}};
}

Helper product_word(const char *name, const char *product) {
  return {.name = std::string("read_product_file: ") + name,
          .set =
              [product = std::string(product ? product : "")](SweptHost &host) {
                if (!product.empty()) host.files.write_text(kProduct, product);
              },
          .act =
              [](SweptHost &host) {
                char word[64] = "";
                const int converted = host.PLUGIN(read_product_file)(word);
                return Outcome{.result = converted, .answer = bytes_of_text(word)};
              },
          .unnoticed = {"fclose", "fprintf", "fflush"}};
}

Helper platform(const std::string &function, const char *name, const char *product) {
  return {
      .name = function + ": " + name,
      .set =
          [product = std::string(product ? product : "")](SweptHost &host) {
            if (!product.empty()) host.files.write_text(kProduct, product);
          },
      .act =
          [=](SweptHost &host) { return Outcome{.result = host.plugin(static_cast<int (*)()>(nullptr), function)()}; },
      .unnoticed = {"fclose", "fprintf", "fflush"}};
}

// Without controllers, which platform it is shows in the reply.
Helper no_controllers(const std::string &entry_point, const char *product) {
  return {.name = entry_point + ": no controllers on " + product,
          .set =
              [=](SweptHost &host) {
                host.files.write(kStorageLock, Bytes().u8(2));
                host.files.write_text(kProduct, product);
              },
          .act =
              [=](SweptHost &host) {
                const Reply reply = host.call(entry_point);
                host.system_log();
                return Outcome{reply.status, reply.length, reply.bytes()};
              },
          .unnoticed = {"fclose", "fprintf", "fflush", "localtime_r"}};
}

// `result` of the undisturbed call stands in the tests of expanders.
Helper expanders(const std::string &entry_point, const char *name, bool are_simulated, CallOptions options) {
  return {.name = entry_point + ": " + name,
          .set =
              [=](SweptHost &host) {
                if (are_simulated) host.files.write_text(kSimulationMarker, "");
              },
          .act =
              [=](SweptHost &host) {
                const Reply reply = host.call(entry_point, options);
                return Outcome{reply.status, reply.length, reply.bytes()};
              },
          .unnoticed = {"fprintf", "fflush"}};
}

Helper flash_module(const char *name, const Bytes &image) {
  return {.name = std::string("read_tarvo_tfm_vpd: ") + name,
          .set =
              [=](SweptHost &host) {
                if (image.size() > 0) host.files.write(kFlashModuleImage, image);
              },
          .act =
              [](SweptHost &host) {
                std::vector<uint8_t> record(kBbuSize);
                host.PLUGIN(read_tarvo_tfm_vpd)(reinterpret_cast<StorBbuInfo *>(record.data()), 0);
                host.system_log();
                return Outcome{.answer = Bytes(record)};
              },
          .unnoticed = {"fclose"}};
}

template <typename List>
void append(std::vector<Helper> &helpers, const List &more) {
  helpers.insert(helpers.end(), more.begin(), more.end());
}

std::vector<Helper> all_helpers() {
  static const auto controllers = summaries<CtlrSummary>('c');
  static const auto drives = summaries<PhyDriveSummary>('d');
  static const auto volumes = summaries<VdSummary>('v');
  static const auto bbus = summaries<BbuSummary>('b');
  const Bytes controller_image = nvme_controller_image(4, {NvmeController{}.stored()});
  const Bytes drive_image = nvme_drive_image(4, {NvmeDrive{}.stored()});
  FILE *const no_stream = nullptr;

  std::vector<Helper> helpers = {
      dump<decltype(print_ctlrinfo)>("print_ctlrinfo", kRecordMarker, record_of<StorCtlrInfo>(kControllersDecoder),
                                     no_stream),
      dump<decltype(print_pdinfo)>("print_pdinfo", kRecordMarker, record_of<StorPhyDriveInfo>(kDrivesDecoder),
                                   no_stream),
      dump<decltype(print_vdinfo)>("print_vdinfo", kRecordMarker, record_of<StorVirtDriveInfo>(kVirtualDrivesDecoder),
                                   no_stream),
      dump<decltype(print_bbuInfo)>("print_bbuInfo", kRecordMarker, record_of<StorBbuInfo>(kBbusDecoder), no_stream),
      dump<decltype(print_bbuTFMInfo)>("print_bbuTFMInfo", kRecordMarker, record_of<StorBbuInfo>(kBbusDecoder)),
      dump<decltype(print_ctlr_list)>("print_ctlr_list", "/var/mctool_ctlrdebug", controllers.data(), 3, "a list"),
      dump<decltype(print_pd_list)>("print_pd_list", "/var/mctool_pddebug", drives.data(), 3, "a list"),
      dump<decltype(print_vd_list)>("print_vd_list", "/var/mctool_vddebug", volumes.data(), 3, "a list"),
      dump<decltype(print_bbu_list)>("print_bbu_list", "/var/mctool_bbudebug", bbus.data(), 3, "a list"),

      to_stream<NvmeCtlrInfo>("print_nvme_ctlrinfo",
                              NvmeController{.type = "NVME-MSWITCH", .link_status = "x1"}.stored()),
      to_stream<NvmePhyDriveInfo>("print_nvme_pdinfo", NvmeDrive{}.stored()),
      to_stream<StorCtlrInfo>("print_ctlrinfo", kControllersDecoder.record),

      gone_devices<CtlrSummary>("add_deleted_ctlrs"),
      gone_devices<PhyDriveSummary>("add_deleted_drives"),
      gone_devices<NvmeCtlrSummary>("add_deleted_nvme_ctlrs"),
      gone_devices<NvmeDriveSummary>("add_deleted_nvme_drives"),
      {.name = "find_deleted_virtdrives: three are gone",
       .set = set_nothing,
       .act =
           [](SweptHost &host) {
             const auto cached = summaries<VdSummary>('o');
             std::vector<uint8_t> reply(32768);
             const uint16_t gone =
                 host.PLUGIN(find_deleted_virtdrives)(reply.data(), 3, volumes.data(), 3, cached.data(), 1);
             host.system_log();
             return Outcome{.result = gone, .answer = Bytes(reply)};
           },
       .unnoticed = {"malloc"}},

      comparison<StorCtlrInfo, CtlrSummary>("new_ctlr_or_modified"),
      comparison<StorPhyDriveInfo, PhyDriveSummary>("new_drive_or_modified"),
      comparison<StorVirtDriveInfo, VdSummary>("new_virtdrive_or_modified"),
      comparison<StorBbuInfo, BbuSummary>("new_bbu_or_modified"),
      comparison<NvmeCtlrInfo, NvmeCtlrSummary>("new_nvme_ctlr_or_modified"),
      comparison<NvmePhyDriveInfo, NvmeDriveSummary>("new_nvme_drive_or_modified"),

      rendering("xmlize_nvme_controller", controller_image),
      rendering_without_room("xmlize_nvme_controller", controller_image),
      rendering("xmlize_nvme_phy_drive", drive_image),
      rendering_without_room("xmlize_nvme_phy_drive", drive_image),

      locking("the lock alone", nullptr, true),
      locking("a file under it, trace", kBbuStore, true),
      locking("no such file, trace", kBbuStore, false),
      product_word("a word", "tarnika"),
      product_word("no word", "\n"),
      product_word("no file, trace", nullptr),
      no_controllers("mc_get_store_ctrls", "kestrano"),
      no_controllers("mc_get_store_ctrls", "tarnika"),
      no_controllers("mc_delta_store_ctrls", "morvik"),
      flash_module("an image", flash_module_image()),
      flash_module("a short image", flash_module_image().slice(0, 100)),
      flash_module("no image", Bytes()),

      expanders("mc_get_store_sasexpanders", "none", false, {.size = 200}),
      expanders("mc_get_store_sasexpanders", "simulation, room to ask for", true, {.size = 10}),
      expanders("mc_get_store_sasexpanders", "simulation, room refused, trace", true,
                {.size = 10, .growth = {Growth::kRefuse}}),
      expanders("mc_delta_store_sasexpanders", "none", false, {.size = 200}),
      {.name = "get_store_sasexpanders: none",
       .set = set_nothing,
       .act =
           [](SweptHost &host) {
             uint32_t length = 1;
             return Outcome{.result = host.PLUGIN(get_store_sasexpanders)(nullptr, nullptr, 0, &length),
                            .length = length};
           }},

      {.name = "enum_name: a word",
       .set = set_nothing,
       .act =
           [](SweptHost &host) {
             static const char *const kWords[] = {"none", "one", nullptr};
             return Outcome{.answer = bytes_of_text(host.PLUGIN(enum_name)(1, kWords))};
           }},
      {.name = "verify_version: always",
       .set = set_nothing,
       .act =
           [](SweptHost &host) {
             return Outcome{.result = host.PLUGIN(verify_version)(nullptr, nullptr) >= 0 ? 0 : EOF};
           }},
      {.name = "print_nvme_physicaldriveinfo: no record",
       .set = set_nothing,
       .act =
           [](SweptHost &host) {
             const int result = host.PLUGIN(print_nvme_physicaldriveinfo)(kOut, nullptr);
             return Outcome{.result = result >= 0 ? 0 : EOF};
           }},
      {.name = "print_nvme_physicaldriveinfo: a record",
       .set = set_nothing,
       .act =
           [](SweptHost &host) {
             const int result =
                 host.PLUGIN(print_nvme_physicaldriveinfo)(kOut, record_of<NvmePhyDriveInfo>(kNvmeDrivesDecoder));
             return taken_from(host, kOut, result);
           },
       .unnoticed = {"fflush"}},
  };
  for (const std::string function : {"running_on_kestrano", "running_on_morvik"})
    append(helpers, std::vector{platform(function, "it is", function.substr(sizeof "running_on_" - 1).c_str()),
                                platform(function, "unknown, trace", nullptr)});
  append(helpers, record_file<StorCtlrInfo>("print_controllerinfo", kControllersDecoder));
  append(helpers, record_file<StorPhyDriveInfo>("print_physicaldriveinfo", kDrivesDecoder));
  append(helpers, record_file<StorVirtDriveInfo>("print_virtualdriveinfo", kVirtualDrivesDecoder));
  append(helpers, record_file<StorBbuInfo>("print_BBUInfo", kBbusDecoder));
  append(helpers, record_file<NvmeCtlrInfo>("print_nvme_controllerinfo", kNvmeControllersDecoder));
  return helpers;
}

}  // namespace

std::vector<Situation> situations_of_helpers() {
  static const std::vector<Helper> helpers = all_helpers();
  std::vector<Situation> situations;
  for (const Helper &helper : helpers)
    situations.push_back({helper.name, [&helper] { return std::make_unique<HelperScene>(helper); }});
  return situations;
}

}  // namespace tests
