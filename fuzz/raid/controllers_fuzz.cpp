// Fuzzes RAID controllers; the other file names the server.

#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/controller_record.h"

namespace {

// A store file whose records differ little from one call to the next, so that some are known, modified and gone.
std::string store_file(fuzz::Choices &choices) {
  std::string file = choices.bytes(1);
  const int records = choices.byte() % 8;
  for (int i = 0; i < records; ++i) {
    StorCtlrInfo record = {};
    record.index = choices.byte() % 4;
    record.is_supported = 1;
    record.serial_number[0] = static_cast<char>(choices.byte() % 4);
    record.vendor_id = record.device_id = record.subvendor_id = record.subdevice_id = 0x0101;
    record.mod_timestamp = choices.byte() % 4;
    const bool is_of_one_byte = choices.byte() % 4 == 0;
    file += is_of_one_byte ? fuzz::record_filled_with<StorCtlrInfo>(choices.byte()) : fuzz::bytes_of(record);
  }
  return file + choices.bytes(choices.byte());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const fuzz::Target kTarget = {
      .facts = mcserver::records::kControllerFacts,
      .empty_store = fuzz::record_filled_with<mcserver::records::ControllerFileHeader>(0),
      .store_file = store_file,
      .record_marker = "/var/mctool_stordebug",
      .list_marker = "/var/mctool_ctlrdebug",
      .other_path = "/etc/product",
      .other_file = [](fuzz::Choices &choices) { return choices.bytes(choices.byte() % 80); },
      .full = "mc_get_store_ctrls",
      .delta = "mc_delta_store_ctrls",
      .buffer_step = 256,
  };
  return fuzz::fuzz_target(kTarget, data, size);
}
