// Fuzzes what belongs to no kind: the lock, the product word, names of codes.

#include <iterator>

#include "fuzz/host/fuzz_host.h"
#include "fuzz/host/target.h"
#include "mcserver_storage.h"
#include "records/kind_facts.h"

namespace {

constexpr const char *kFiles[] = {mcserver::records::kRaidLockPath, "/var/other", "/etc/product"};

void lock_and_unlock(fuzz::FuzzHost &host, fuzz::Choices &choices) {
  const char *const path = choices.byte() & 1 ? kFiles[1] : nullptr;
  const uint8_t nulls = choices.byte();
  host.call([&] {
    struct stat about;
    int32_t fd = -1;
    FILE *lock_stream = nullptr;
    FILE *data_stream = nullptr;
    const int32_t status =
        getlock_and_open_file(nulls == 1 ? nullptr : &about, nulls == 2 ? nullptr : &fd,
                              nulls == 3 ? nullptr : &lock_stream, nulls == 4 ? nullptr : &data_stream, path);
    if (status == MC_STORE_SUCCESS) unlock_and_close_file(fd, lock_stream, data_stream);
  });
}

void read_product(fuzz::FuzzHost &host, fuzz::Choices &choices) {
  char word[64];
  const uint8_t which = choices.below(4);
  host.call([&] {
    if (which == 0) read_product_file(word);
    if (which == 1) read_product_file(nullptr);
    if (which == 2) running_on_kestrano();
    if (which == 3) running_on_morvik();
  });
}

void name_a_code(fuzz::FuzzHost &host, fuzz::Choices &choices) {
  const char *const *const tables[] = {nvme_state_names, nvme_status_names, nullptr};
  const char *const *const table = tables[choices.below(std::size(tables))];
  const int value = static_cast<int8_t>(choices.byte());
  host.call([&] { return enum_name(value, table); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static fuzz::FuzzHost host;
  fuzz::Choices choices(data, size);
  host.start_over();
  while (!choices.exhausted()) switch (choices.below(7)) {
      case 0: {
        const char *const path = kFiles[choices.below(std::size(kFiles))];
        host.files.write(path, choices.bytes(choices.byte()), 0);
        break;
      }
      case 1:
        host.set_trace(choices);
        break;
      case 2:
        host.disturb(kFiles[1], choices);
        break;
      case 3:
        lock_and_unlock(host, choices);
        break;
      case 4:
        read_product(host, choices);
        break;
      case 5:
        name_a_code(host, choices);
        break;
      default:
        host.call([] { return verify_version(nullptr, nullptr); });
    }
  return 0;
}
