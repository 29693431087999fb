// The store file of each kind, as its decoder knows it.

#include "decoders/decoder.h"
#include "mcserver_storage.h"
#include "shared/exported.h"

namespace mcserver::decoders {
namespace {

constexpr HeaderNumber kControllersHeader[] = {{1, "Cannot read input file '%s': %m\n"}};
constexpr Summary kControllersSummary = {"Subsystem State: %d\n", "Num controllers: %d\n"};
constexpr Decoder kControllers = {
    .input_name = "storctlr_info",
    .output_name = "storctlr_info_decoded.txt",
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = "stat(%s) failed: %m\n",
    .header = kControllersHeader,
    .summary = &kControllersSummary,
    .allocation = Moment::kBeforeHeader,
    .failed_allocation = ResultOf::kMessage,
    .records = records_as_in_a_reply<StoreReplyHeader, StorCtlrInfo, print_controllerinfo>(),
};

constexpr HeaderNumber kDrivesHeader[] = {{4, "Cannot read noofDrives from '%s': %m\n"}};
constexpr Decoder kDrives = {
    .input_name = "storphydrive_info",
    .output_name = "storphydrive_info_decoded.txt",
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = nullptr,
    .header = kDrivesHeader,
    .summary = nullptr,
    .allocation = Moment::kBeforeRecords,
    .failed_allocation = ResultOf::kClosing,
    .records = records_as_in_a_reply<PhyDriveReplyHeader, StorPhyDriveInfo, print_physicaldriveinfo>(),
};

constexpr Decoder kVirtualDrives = {
    .input_name = "storvirtdrive_info",
    .output_name = "storvirtdrive_info_decoded.txt",
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = "Cannot stat input file '%s': %m\n",
    .header = {},
    .summary = nullptr,
    .allocation = Moment::kBeforeRecords,
    .failed_allocation = ResultOf::kMessage,
    .records = records_as_in_a_reply<VirtDriveReplyHeader, StorVirtDriveInfo, print_virtualdriveinfo>(),
};

constexpr Decoder kBbus = {
    .input_name = "storBBU_info",
    .output_name = "storBBU_info_decoded.txt",
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = "stat(%s) failed: %m\n",
    .header = {},
    .summary = nullptr,
    .allocation = Moment::kBeforeRecords,
    .failed_allocation = ResultOf::kMessage,
    .records = records_as_in_a_reply<BbuReplyHeader, StorBbuInfo, print_BBUInfo>(),
};

constexpr HeaderNumber kNvmeControllersHeader[] = {{1, "Cannot read file '%s': %m\n"}};
constexpr Summary kNvmeControllersSummary = {"NVME Subsystem State: %d\n", "Num NVME controllers: %d\n"};
constexpr Decoder kNvmeControllers = {
    .input_name = "nvmectlr_info",
    .output_name = "nvmectlr_info_decoded.txt",
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = "stat(%s) failed: %m\n",
    .header = kNvmeControllersHeader,
    .summary = &kNvmeControllersSummary,
    .allocation = Moment::kBeforeHeader,
    .failed_allocation = ResultOf::kMessage,
    .records = records_one_by_one<NvmeCtlrInfo, print_nvme_controllerinfo>(),
};

constexpr HeaderNumber kNvmeDrivesHeader[] = {{4, "Cannot read noofDrives from '%s'\n"},
                                              {1, "Cannot read nvme_subsystem_info from '%s'\n"}};
constexpr Summary kNvmeDrivesSummary = {"NVME Subsystem State: %d\n", "NVME drive count: %d\n"};
constexpr Decoder kNvmeDrives = {
    .input_name = "nvmephydrive_info",
    .output_name = "nvmephydrive_info_decoded.txt",
    .unopened = "Cannot open file '%s': %m\n",
    .unknown_size = "stat(%s) failed: %m\n",
    .header = kNvmeDrivesHeader,
    .summary = &kNvmeDrivesSummary,
    .allocation = Moment::kBeforeRecords,
    .failed_allocation = ResultOf::kMessage,
    .records = records_one_by_one<NvmePhyDriveInfo, print_nvme_physicaldriveinfo>(),
};

static_assert(is_sound(kControllers) && is_sound(kDrives) && is_sound(kVirtualDrives) && is_sound(kBbus) &&
              is_sound(kNvmeControllers) && is_sound(kNvmeDrives));

}  // namespace

EXPORTED int list_controllers(const char *input_dir, const char *output_dir) {
  return decode(kControllers, input_dir, output_dir);
}

EXPORTED int list_physical_drives(const char *input_dir, const char *output_dir) {
  return decode(kDrives, input_dir, output_dir);
}

EXPORTED int list_virtual_drives(const char *input_dir, const char *output_dir) {
  return decode(kVirtualDrives, input_dir, output_dir);
}

EXPORTED int list_bbus(const char *input_dir, const char *output_dir) { return decode(kBbus, input_dir, output_dir); }

EXPORTED int list_nvme_controllers(const char *input_dir, const char *output_dir) {
  return decode(kNvmeControllers, input_dir, output_dir);
}

EXPORTED int list_nvme_physical_drives(const char *input_dir, const char *output_dir) {
  return decode(kNvmeDrives, input_dir, output_dir);
}

}  // namespace mcserver::decoders
