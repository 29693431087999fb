// Fuzzes the decoders: files of any content, while libc fails at any point.

#include <iterator>
#include <string>

#include "fuzz/host/fuzz_host.h"
#include "mcserver_storage.h"
#include "records/bbu_record.h"
#include "records/controller_record.h"
#include "records/drive_record.h"
#include "records/nvme_controller_record.h"
#include "records/nvme_drive_record.h"
#include "records/virtual_drive_record.h"

namespace {

// A decoder, and what its file looks like.
struct Input {
  const char *decoder;
  const mcserver::records::KindFacts &facts;
  size_t header_size;
  size_t record_size;
};

namespace records = mcserver::records;

constexpr Input kInputs[] = {
    {"list_controllers", records::kControllerFacts, sizeof(records::ControllerFileHeader), sizeof(StorCtlrInfo)},
    {"list_physical_drives", records::kDriveFacts, sizeof(records::DriveFileHeader), sizeof(StorPhyDriveInfo)},
    {"list_virtual_drives", records::kVirtualDriveFacts, 0, sizeof(StorVirtDriveInfo)},
    {"list_bbus", records::kBbuFacts, 0, sizeof(StorBbuInfo)},
    {"list_nvme_controllers", records::kNvmeControllerFacts, sizeof(records::NvmeControllerFileHeader),
     sizeof(NvmeCtlrInfo)},
    {"list_nvme_physical_drives", records::kNvmeDriveFacts, sizeof(records::NvmeDriveFileHeader),
     sizeof(NvmePhyDriveInfo)},
};

// Where a copy of the store file is.
std::string copy_of(const records::KindFacts &facts) {
  const std::string path = facts.store_path;
  return "/in" + path.substr(path.rfind('/'));
}

// Each record is a byte that fills it, with a few others strewn in; the last one may be short.
std::string store_file(const Input &input, fuzz::Choices &choices) {
  std::string file = choices.bytes(input.header_size);
  for (int records = choices.byte() % 5; records > 0; --records) {
    std::string record(input.record_size, static_cast<char>(choices.byte()));
    for (int changes = choices.byte() % 8; changes > 0; --changes) {
      const size_t at = (choices.byte() * 256u + choices.byte()) % input.record_size;
      record[at] = static_cast<char>(choices.byte());
    }
    file += record;
  }
  return file + choices.bytes(choices.byte());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static fuzz::FuzzHost host(PLUGIN_PATH);
  fuzz::Choices choices(data, size);
  host.start_over();
  host.write("/out/an_older_file", "");
  while (!choices.exhausted()) {
    const Input &input = kInputs[choices.byte() % std::size(kInputs)];
    host.write(copy_of(input.facts), store_file(input, choices));
    host.fail_one_in(choices.byte(), &choices);
    host.decode(input.decoder, "/in", "/out");
    host.fail_one_in(0, &choices);
  }
  return 0;
}
