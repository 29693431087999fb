// The store file of each kind, as its decoder knows it.

#include "decoders/decoder.h"
#include "mcserver_storage.h"
#include "records/bbu_record.h"
#include "records/controller_record.h"
#include "records/drive_record.h"
#include "records/nvme_controller_record.h"
#include "records/nvme_drive_record.h"
#include "records/virtual_drive_record.h"
#include "shared/exported.h"

namespace mcserver::decoders {
namespace {

constexpr HeaderNumber kControllersHeader[] = {
    {sizeof(records::ControllerFileHeader::subsystem_state), "Cannot read input file '%s': %m\n"}};
constexpr Summary kControllersSummary = {"Subsystem State: %d\n", "Num controllers: %d\n"};
constexpr Decoder kControllers({
    .store_path = records::kControllerFacts.store_path,
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = "stat(%s) failed: %m\n",
    .header = kControllersHeader,
    .summary = &kControllersSummary,
    .allocation = AllocationTime::kBeforeHeader,
    .failed_allocation = ResultOf::kMessage,
    .records = records_as_in_a_reply<StoreReplyHeader, StorCtlrInfo, print_controllerinfo>(),
});

constexpr HeaderNumber kDrivesHeader[] = {
    {sizeof(records::DriveFileHeader::noofDrives), "Cannot read noofDrives from '%s': %m\n"}};
constexpr Decoder kDrives({
    .store_path = records::kDriveFacts.store_path,
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = nullptr,
    .header = kDrivesHeader,
    .summary = nullptr,
    .allocation = AllocationTime::kBeforeRecords,
    .failed_allocation = ResultOf::kClosing,
    .records = records_as_in_a_reply<PhyDriveReplyHeader, StorPhyDriveInfo, print_physicaldriveinfo>(),
});

constexpr Decoder kVirtualDrives({
    .store_path = records::kVirtualDriveFacts.store_path,
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = "Cannot stat input file '%s': %m\n",
    .header = {},
    .summary = nullptr,
    .allocation = AllocationTime::kBeforeRecords,
    .failed_allocation = ResultOf::kMessage,
    .records = records_as_in_a_reply<VirtDriveReplyHeader, StorVirtDriveInfo, print_virtualdriveinfo>(),
});

constexpr Decoder kBbus({
    .store_path = records::kBbuFacts.store_path,
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = "stat(%s) failed: %m\n",
    .header = {},
    .summary = nullptr,
    .allocation = AllocationTime::kBeforeRecords,
    .failed_allocation = ResultOf::kMessage,
    .records = records_as_in_a_reply<BbuReplyHeader, StorBbuInfo, print_BBUInfo>(),
});

constexpr HeaderNumber kNvmeControllersHeader[] = {
    {sizeof(records::NvmeControllerFileHeader::subsystem_state), "Cannot read file '%s': %m\n"}};
constexpr Summary kNvmeControllersSummary = {"NVME Subsystem State: %d\n", "Num NVME controllers: %d\n"};
constexpr Decoder kNvmeControllers({
    .store_path = records::kNvmeControllerFacts.store_path,
    .unopened = "Cannot open input file '%s': %m\n",
    .unknown_size = "stat(%s) failed: %m\n",
    .header = kNvmeControllersHeader,
    .summary = &kNvmeControllersSummary,
    .allocation = AllocationTime::kBeforeHeader,
    .failed_allocation = ResultOf::kMessage,
    .records = records_one_by_one<NvmeCtlrInfo, print_nvme_controllerinfo>(),
});

constexpr HeaderNumber kNvmeDrivesHeader[] = {
    {sizeof(records::NvmeDriveFileHeader::noofDrives), "Cannot read noofDrives from '%s'\n"},
    {sizeof(records::NvmeDriveFileHeader::nvme_subsystem_info), "Cannot read nvme_subsystem_info from '%s'\n"}};
constexpr Summary kNvmeDrivesSummary = {"NVME Subsystem State: %d\n", "NVME drive count: %d\n"};
constexpr Decoder kNvmeDrives({
    .store_path = records::kNvmeDriveFacts.store_path,
    .unopened = "Cannot open file '%s': %m\n",
    .unknown_size = "stat(%s) failed: %m\n",
    .header = kNvmeDrivesHeader,
    .summary = &kNvmeDrivesSummary,
    .allocation = AllocationTime::kBeforeRecords,
    .failed_allocation = ResultOf::kMessage,
    .records = records_one_by_one<NvmePhyDriveInfo, print_nvme_physicaldriveinfo>(),
});

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
