// The store files that can be decoded, and what the text of a record is.
#pragma once

#include <ostream>
#include <string>

#include "host/bytes.h"
#include "nvme/nvme_bytes.h"
#include "raid/bbus/full_record.h"
#include "raid/controllers/full_record.h"
#include "raid/drives/full_record.h"
#include "raid/virtual_drives/full_record.h"

namespace tests {

struct DecoderKind {
  const char *decoder;
  const char *store;  // the file's name
  Bytes header;
  Bytes record;
  std::string record_text;
  std::string state_line;  // empty: no summary
  std::string count_line;  // up to the number
  bool is_nvme = false;

  bool has_summary() const { return !state_line.empty(); }
  Bytes file_of(size_t records) const {
    Bytes file = header;
    for (size_t i = 0; i < records; ++i) file += record;
    return file;
  }
  // What the lines in front of the records are for a file of this size.
  std::string summary(uint64_t size) const {
    if (!has_summary()) return {};
    return state_line + count_line + std::to_string(size / record.size()) + "\n";
  }
  std::string text_of(size_t records) const {
    std::string text = summary(file_of(records).size());
    for (size_t i = 0; i < records; ++i) text += record_text;
    return text;
  }
};

inline void PrintTo(const DecoderKind &kind, std::ostream *out) { *out << kind.decoder; }

inline const DecoderKind kControllersDecoder = {
    .decoder = "list_controllers",
    .store = "storctlr_info",
    .header = Bytes().u8(200),
    .record = full_controller_record(Bytes::Order::kLittle),
    .record_text = full_controller_text(),
    .state_line = "Subsystem State: 200\n",
    .count_line = "Num controllers: ",
};

inline const DecoderKind kDrivesDecoder = {
    .decoder = "list_physical_drives",
    .store = "storphydrive_info",
    .header = little_endian().u32(77),
    .record = full_drive_record(Bytes::Order::kLittle),
    .record_text = full_drive_text(),
    .state_line = {},
    .count_line = {},
};

inline const DecoderKind kVirtualDrivesDecoder = {
    .decoder = "list_virtual_drives",
    .store = "storvirtdrive_info",
    .header = Bytes(),
    .record = full_virtual_drive_record(Bytes::Order::kLittle),
    .record_text = full_virtual_drive_text(),
    .state_line = {},
    .count_line = {},
};

inline const DecoderKind kBbusDecoder = {
    .decoder = "list_bbus",
    .store = "storBBU_info",
    .header = Bytes(),
    .record = full_battery_record(Bytes::Order::kLittle),
    .record_text = full_battery_text(),
    .state_line = {},
    .count_line = {},
};

inline const DecoderKind kNvmeControllersDecoder = {
    .decoder = "list_nvme_controllers",
    .store = "nvmectlr_info",
    .header = Bytes().u8(201),
    .record = NvmeController{.stamp = 0xFFFFFFFE, .drive_count = 130}.stored(),
    .record_text =
        "controller-name: NVME-C1\ncontroller-type: NVME-CTLR\nmod-timestamp: -2\nstatus: Optimal\n"
        "drive-count: 130\n",
    .state_line = "NVME Subsystem State: 201\n",
    .count_line = "Num NVME controllers: ",
    .is_nvme = true,
};

inline const DecoderKind kNvmeDrivesDecoder = {
    .decoder = "list_nvme_physical_drives",
    .store = "nvmephydrive_info",
    .header = little_endian().u32(7).u8(202),
    .record = NvmeDrive{.temperature = 200, .life_left = 65535}.stored(),
    .record_text =
        "controller-name: NVME-C1\nsmbios-pcislotname: FRONT-NVME-1\nproduct-name: NVMe SSD 1.6TB\nstatus: Optimal\n"
        "serial-number: SN000123\nfirmware-version: FW1.0\nvendor: VENDOR\nvendor-id: 0x1234\ndevice-id: 0x5678\n"
        "subvendor-id: 0x1234\nsubdevice-id: 0x9abc\ntemperature: 200\nstatus-description: Healthy\n"
        "drive-life-used-percent: 2\nlife-left-in-days: 65535\npercent-power-on-hours: 10\nperformance-percent: 100\n"
        "throttle-threshold: 70\nshutdown-threshold: 80\nmod-timestamp: 1\n\n",
    .state_line = "NVME Subsystem State: 202\n",
    .count_line = "NVME drive count: ",
    .is_nvme = true,
};

inline const DecoderKind kDecoderKinds[] = {kControllersDecoder, kDrivesDecoder,          kVirtualDrivesDecoder,
                                            kBbusDecoder,        kNvmeControllersDecoder, kNvmeDrivesDecoder};

}  // namespace tests
