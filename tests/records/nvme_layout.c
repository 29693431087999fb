/* The layout of the NVMe records, field by field. That this file is C shows that the header is. */
#include "mcserver_storage.h"

#define AT(record, member, offset, width)                                        \
  _Static_assert(offsetof(record, member) == (offset), #member " is elsewhere"); \
  _Static_assert(sizeof(((record *)0)->member) == (width), #member " has another width")

_Static_assert(sizeof(NvmeCtlrInfo) == 262, "NvmeCtlrInfo has another size");
AT(NvmeCtlrInfo, controller_name, 0, 24);
AT(NvmeCtlrInfo, mod_timestamp, 24, 4);
AT(NvmeCtlrInfo, status, 28, 1);
AT(NvmeCtlrInfo, drive_count, 29, 1);
AT(NvmeCtlrInfo, controller_type, 30, 16);
AT(NvmeCtlrInfo, vendor_id, 46, 9);
AT(NvmeCtlrInfo, product_id, 55, 17);
AT(NvmeCtlrInfo, component_id, 72, 4);
AT(NvmeCtlrInfo, product_revision, 76, 5);
AT(NvmeCtlrInfo, p2p_vendor_id, 81, 2);
AT(NvmeCtlrInfo, p2p_device_id, 83, 2);
AT(NvmeCtlrInfo, running_firmware_version, 85, 24);
AT(NvmeCtlrInfo, pending_firmware_version, 109, 24);
AT(NvmeCtlrInfo, switch_temperature, 133, 1);
AT(NvmeCtlrInfo, switch_status, 134, 64);
AT(NvmeCtlrInfo, link_status, 198, 64);

_Static_assert(sizeof(NvmePhyDriveInfo) == 356, "NvmePhyDriveInfo has another size");
AT(NvmePhyDriveInfo, smbios_pcislotname, 0, 16);
AT(NvmePhyDriveInfo, controller_name, 16, 24);
AT(NvmePhyDriveInfo, status, 40, 1);
AT(NvmePhyDriveInfo, product_name, 41, 81);
AT(NvmePhyDriveInfo, serial_number, 122, 31);
AT(NvmePhyDriveInfo, firmware_version, 153, 97);
AT(NvmePhyDriveInfo, vendor, 250, 20);
AT(NvmePhyDriveInfo, vendor_id, 270, 2);
AT(NvmePhyDriveInfo, device_id, 272, 2);
AT(NvmePhyDriveInfo, subvendor_id, 274, 2);
AT(NvmePhyDriveInfo, subdevice_id, 276, 2);
AT(NvmePhyDriveInfo, temperature, 278, 1);
AT(NvmePhyDriveInfo, status_description, 279, 64);
AT(NvmePhyDriveInfo, drive_life_used_percent, 343, 1);
AT(NvmePhyDriveInfo, life_left_in_days, 344, 2);
AT(NvmePhyDriveInfo, performance_percent, 346, 1);
AT(NvmePhyDriveInfo, percent_power_on_hours, 347, 1);
AT(NvmePhyDriveInfo, throttle_threshold, 348, 1);
AT(NvmePhyDriveInfo, shutdown_threshold, 349, 1);
AT(NvmePhyDriveInfo, reserved, 350, 2);
AT(NvmePhyDriveInfo, mod_timestamp, 352, 4);

_Static_assert(sizeof(NvmeCtlrSummary) == 28, "NvmeCtlrSummary has another size");
_Static_assert(sizeof(NvmeDriveSummary) == 84, "NvmeDriveSummary has another size");
AT(NvmeCtlrSummary, controller_name, 0, 24);
AT(NvmeCtlrSummary, mod_timestamp, 24, 4);
AT(NvmeDriveSummary, smbios_pcislotname, 0, 16);
AT(NvmeDriveSummary, unused, 16, 24);
AT(NvmeDriveSummary, vendor_id, 40, 2);
AT(NvmeDriveSummary, device_id, 42, 2);
AT(NvmeDriveSummary, subvendor_id, 44, 2);
AT(NvmeDriveSummary, subdevice_id, 46, 2);
AT(NvmeDriveSummary, serial_number, 48, 31);
AT(NvmeDriveSummary, mod_timestamp, 80, 4);
AT(NvmeDriveImageHeader, state, 0, 1);
AT(NvmeDriveImageHeader, one, 1, 1);
AT(NvmeDriveImageHeader, max_entries, 2, 2);
AT(NvmeDriveImageHeader, count, 4, 2);
AT(NvmeDriveImageHeader, record_size, 6, 4);
_Static_assert(sizeof(NvmeDriveImageHeader) == 18, "the drives' image header has another size");
AT(NvmeCtlrImageHeader, state, 0, 1);
AT(NvmeCtlrImageHeader, count, 1, 1);
AT(NvmeCtlrImageHeader, record_size, 2, 4);
_Static_assert(sizeof(NvmeCtlrImageHeader) == 14, "the controllers' image header has another size");
