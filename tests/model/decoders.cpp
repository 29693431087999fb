// The decoders: copies of store files, made readable.

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <vector>

#include "model/kinds.h"

namespace model {
namespace decoder_model {

// A number in front of the records, and what is said where it cannot be read.
struct Header {
  size_t width;
  const char *unreadable;
};

// A line of the summary takes the last header's first byte, and the number of records.
struct Summary {
  const char *state;
  const char *count;
};

struct Decoder {
  std::string name;
  std::string file;
  Kind (*kind)();
  std::string (*text)(const Bytes &record);
  uint32_t record;
  const char *unopened = "Cannot open input file '%s': %m\n";
  const char *unknown_size = "stat(%s) failed: %m\n";  // null: nothing is said
  std::vector<Header> headers = {};
  std::optional<Summary> summary = {};
  const char *unwritable = "error: unable to open file %s";
  bool allocates_before_header = false;
  bool is_nvme = false;
};

const std::vector<Decoder> kDecoders = {
    {.name = "list_controllers",
     .file = "storctlr_info",
     .kind = controllers,
     .text = text_of_controller,
     .record = 1294,
     .headers = {{1, "Cannot read input file '%s': %m\n"}},
     .summary = Summary{"Subsystem State: %d\n", "Num controllers: %d\n"},
     .allocates_before_header = true},
    {.name = "list_bbus", .file = "storBBU_info", .kind = bbus, .text = text_of_bbu, .record = 161},
    {.name = "list_physical_drives",
     .file = "storphydrive_info",
     .kind = drives,
     .text = text_of_drive,
     .record = 453,
     .unknown_size = nullptr,
     .headers = {{4, "Cannot read noofDrives from '%s': %m\n"}}},
    {.name = "list_virtual_drives",
     .file = "storvirtdrive_info",
     .kind = virtual_drives,
     .text = text_of_virtual_drive,
     .record = 5799,
     .unknown_size = "Cannot stat input file '%s': %m\n"},
    {.name = "list_nvme_controllers",
     .file = "nvmectlr_info",
     .kind = nvme_controllers,
     .text = text_of_nvme_controller,
     .record = 262,
     .headers = {{1, "Cannot read file '%s': %m\n"}},
     .summary = Summary{"NVME Subsystem State: %d\n", "Num NVME controllers: %d\n"},
     .unwritable = "error: unable to open file %s: %m",
     .allocates_before_header = true,
     .is_nvme = true},
    {.name = "list_nvme_physical_drives",
     .file = "nvmephydrive_info",
     .kind = nvme_drives,
     .text = text_of_nvme_drive,
     .record = 356,
     .unopened = "Cannot open file '%s': %m\n",
     .headers = {{4, "Cannot read noofDrives from '%s'\n"}, {1, "Cannot read nvme_subsystem_info from '%s'\n"}},
     .summary = Summary{"NVME Subsystem State: %d\n", "NVME drive count: %d\n"},
     .unwritable = "error: unable to open file %s: %m",
     .is_nvme = true},
};

// What is longer than 319 characters is cut off.
std::string path(const std::string &directory, const std::string &name) {
  return (directory + "/" + name).substr(0, 319);
}

// A message with the path, if there is one: how many characters were printed.
int32_t complain(World &world, const char *message, const std::string &path) {
  if (!message) return 0;
  errno = world.error();  // for %m
  const std::string text = printed(message, path.c_str());
  world.printed_err += text;
  return static_cast<int32_t>(text.size());
}

void print_record(World &world, const Decoder &decoder, const std::string &output, const Bytes &record) {
  if (!decoder.is_nvme) world.printed_out += output + "\n";
  if (world.append(output, decoder.text(record))) return;
  errno = world.error();  // for %m
  world.printed_out += printed(decoder.unwritable, output.c_str());
}

int32_t decode(World &world, const std::string &name, const std::string &from, const std::string &to) {
  const Decoder &decoder = *std::ranges::find(kDecoders, name, &Decoder::name);
  const std::string input = path(from, decoder.file);
  const std::string output = path(to, decoder.file + "_decoded.txt");
  const auto close = [&] { return world.works("fclose") ? 0 : EOF; };

  world.remove(output);
  auto stream = world.open(input);
  if (!stream) return complain(world, decoder.unopened, input);
  const auto facts = world.stat(input);
  if (!facts) {
    const int32_t length = complain(world, decoder.unknown_size, input);
    const int32_t closed = close();
    return decoder.unknown_size ? length : closed;
  }

  const auto has_memory = [&] { return world.works("calloc"); };
  const auto without_memory = [&] {
    const auto size = static_cast<int>(decoder.record + (decoder.is_nvme ? 0 : facts->size));
    const int32_t length = complain(world, printed("calloc(%d) failed: %%m\n", size).c_str(), input);
    const int32_t closed = close();
    return decoder.name == "list_physical_drives" ? closed : length;
  };
  if (decoder.allocates_before_header && !has_memory()) return without_memory();
  uint8_t state = 0;
  for (const Header &header : decoder.headers) {
    world.clear_error();
    const auto bytes = world.read_whole(*stream, header.width);
    if (!bytes) {
      complain(world, header.unreadable, input);
      return close();
    }
    state = (*bytes)[0];
  }
  if (decoder.summary) {
    const auto count = static_cast<int>(facts->size / decoder.record);
    world.append(output, printed(decoder.summary->state, state) + printed(decoder.summary->count, count));
  }
  if (!decoder.allocates_before_header && !has_memory()) return without_memory();

  while (true) {
    const Bytes record = world.read(*stream, decoder.record);
    if (record.size() < decoder.record) return close();
    print_record(world, decoder, output, record);
  }
}

// A directory in which paths are too long, so that their ends are missing.
const std::string kDeep = "/" + std::string(152, 'd') + "/" + std::string(152, 'd');

Kind kind_of(const Decoder &decoder) {
  Kind kind = {.name = decoder.name,
               .entry_points = {decoder.name},
               .files = {},
               .markers = {},
               .faults = {{"unlink", 1, EACCES, false},
                          {"fopen", 6, EACCES, false},
                          {"stat", 1, EIO, false},
                          {"fread", 6, EIO, false},
                          {"calloc", 1, ENOMEM, false},
                          {"fclose", 6, ENOSPC, false}},
               .decode = decode,
               .directories = {"/in", "/out", kDeep}};
  for (const ChangingFile &file : decoder.kind().files) {
    if (file.path != "/var/" + decoder.file) continue;
    kind.files.push_back({"/in/" + decoder.file, file.content});
    kind.files.push_back({path(kDeep, decoder.file), file.content});
  }
  return kind;
}

}  // namespace decoder_model

std::vector<Kind> decoders() {
  using namespace decoder_model;
  std::vector<Kind> kinds;
  for (const Decoder &decoder : kDecoders) kinds.push_back(kind_of(decoder));
  return kinds;
}

}  // namespace model
