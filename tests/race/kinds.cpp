#include "race/kinds.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <stdexcept>

#include "nvme/nvme_bytes.h"
#include "raid/bbus/bbu_bytes.h"
#include "raid/controllers/controller_bytes.h"
#include "raid/drives/drive_bytes.h"
#include "raid/virtual_drives/virtual_drive_bytes.h"

namespace tests {
namespace {

constexpr size_t kMostDevices = 12;
constexpr size_t kGenerationDigits = 8;

// Reads the same in both byte orders, since one kind compares a stamp in one with a stamp in the other, and is never 0.
uint32_t mirrored_stamp(uint32_t number) {
  const uint32_t outer = (number << 1 | 1) & 0xFF;
  const uint32_t inner = number >> 7 & 0xFF;
  return outer | inner << 8 | inner << 16 | outer << 24;
}

// A number that looks random, and is the same whenever it is asked for.
uint32_t scattered(uint32_t a, uint32_t b) {
  uint32_t mixed = a * 0x9E3779B1u ^ (b + 1) * 0x85EBCA77u;
  mixed ^= mixed >> 15;
  mixed *= 0xC2B2AE3Du;
  return mixed ^ mixed >> 13;
}

std::string generation_text(uint32_t generation) {
  char text[16];
  snprintf(text, sizeof text, "G%0*u", static_cast<int>(kGenerationDigits), generation);
  return text;
}

// ------------------------------------------------------------------------------------------------------------- RAID

Bytes slot_of(const Bytes &given, size_t offset, size_t size) {
  return given.size() < offset + size ? Bytes::repeated(size, 0) : given.slice(offset, size);
}

// What a gone device's record does not tell is as it was in the buffer.
template <typename Reported, typename Gone>
Bytes raid_answer(const News &news, const Bytes &given, const Bytes &header, size_t record_size, Reported reported,
                  Gone gone) {
  Bytes reply = header;
  for (const Device &device : news.reported) reply += reported(device, news.now.number);
  for (const Device &device : news.gone)
    reply += gone(device, news.before.number, slot_of(given, reply.size(), record_size));
  return reply;
}

uint8_t count_of(const News &news) { return static_cast<uint8_t>(news.reported.size() + news.gone.size()); }

Controller controller(const Device &device, uint32_t generation) {
  Controller controller = numbered(device.number, device.stamp);
  controller.name = generation_text(generation);
  return controller;
}

Bytes controller_answer(const News &news, const Bytes &given) {
  return raid_answer(
      news, given, controller_header(2, count_of(news)), kControllerSize,
      [](const Device &device, uint32_t generation) { return controller(device, generation).reported(); },
      [](const Device &device, uint32_t generation, const Bytes &slot) {
        return gone(controller(device, generation), slot);
      });
}

Bytes with_product(Bytes drive, uint32_t generation) {
  return drive.put(50, Bytes().text(generation_text(generation), 17));
}

Bytes drive_answer(const News &news, const Bytes &given) {
  const auto announced = static_cast<uint32_t>(news.now.devices.size());
  return raid_answer(
      news, given, drive_header(announced, count_of(news)), kDriveSize,
      [](const Device &device, uint32_t generation) {
        return with_product(numbered_drive(device.number, device.stamp).reported(), generation);
      },
      [](const Device &device, uint32_t, const Bytes &slot) {
        return gone_drive(numbered_drive(device.number, device.stamp), slot);
      });
}

VirtualDrive virtual_drive(const Device &device, uint32_t generation) {
  VirtualDrive drive = volume(device.number, device.stamp);
  drive.name = generation_text(generation);
  return drive;
}

Bytes virtual_drive_answer(const News &news, const Bytes &given) {
  return raid_answer(
      news, given, virtual_drive_header(count_of(news)), kVirtualDriveSize,
      [](const Device &device, uint32_t generation) { return virtual_drive(device, generation).reported(); },
      [](const Device &device, uint32_t generation, const Bytes &slot) {
        return gone_virtual_drive(virtual_drive(device, generation), slot);
      });
}

Bbu bbu(const Device &device, uint32_t generation) {
  Bbu bbu = bbu_of(device.number, device.stamp);
  bbu.model = generation_text(generation);
  return bbu;
}

Bytes bbu_answer(const News &news, const Bytes &given) {
  return raid_answer(
      news, given, bbu_header(count_of(news)), kBbuSize,
      [](const Device &device, uint32_t generation) { return bbu(device, generation).reported(); },
      [](const Device &, uint32_t, const Bytes &slot) { return slot; });
}

// ------------------------------------------------------------------------------------------------------------- NVMe

Bytes bytes_of(const std::string &text) { return Bytes().text(text, text.size()); }

NvmeController nvme_controller(const Device &device, uint32_t generation) {
  return {.name = "NVME-C" + std::to_string(device.number), .stamp = device.stamp, .type = generation_text(generation)};
}

Bytes nvme_controller_answer(const News &news, const Bytes &) {
  std::string xml = controller_summary(count_of(news));
  for (const Device &device : news.reported) {
    const NvmeController reported = nvme_controller(device, news.now.number);
    xml += plain_controller_xml(reported.name, "Optimal", reported.type);
  }
  for (const Device &device : news.gone) xml += plain_controller_xml(nvme_controller(device, 0).name, "Deleted", "", 0);
  return bytes_of(xml);
}

NvmeDrive nvme_drive(const Device &device, uint32_t generation) {
  const std::string number = std::to_string(device.number);
  return {.slot = "FRONT-NVME-" + number,
          .serial = "SN" + number,
          .firmware = generation_text(generation),
          .stamp = device.stamp};
}

// What a slot of the staging image holds that nothing was read into.
NvmeDrive blank_nvme_drive() {
  return {.controller_name = "",
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
          .shutdown = 0};
}

// The first gone drive stands where the file's last drive was read, if that one is not reported.
Bytes nvme_drive_answer(const News &news, const Bytes &) {
  if (count_of(news) == 0) return {};
  std::string xml = drive_summary(count_of(news));
  for (const Device &device : news.reported) xml += nvme_drive(device, news.now.number).xml();

  const bool last_is_reported = news.reported.empty() || news.reported.back().number == news.now.devices.back().number;
  NvmeDrive slot = last_is_reported ? blank_nvme_drive() : nvme_drive(news.now.devices.back(), news.now.number);
  for (const Device &device : news.gone) {
    const NvmeDrive gone = nvme_drive(device, news.before.number);
    slot.slot = gone.slot;
    slot.serial = gone.serial;
    xml += slot.xml("Deleted");
    slot = blank_nvme_drive();
  }
  return bytes_of(xml);
}

// ---------------------------------------------------------------------------------------------------------- the table

const std::array kKinds = {
    Kind{.name = "Controllers",
         .full = "mc_get_store_ctrls",
         .delta = "mc_delta_store_ctrls",
         .store = kControllerStore,
         .lock = kControllerStore,
         .remembers_stamps = true,
         .tells_gone = true,
         .reply_header_size = kControllerHeaderSize,
         .count_offset = 4,
         .record_size = kControllerSize,
         .renderer = nullptr,
         .ready = 2,
         .not_ready = 1,
         .file_header = [](size_t, uint8_t state) { return Bytes().u8(state); },
         .stored = [](const Device &device, uint32_t number) { return controller(device, number).stored(); },
         .answer = controller_answer},
    Kind{.name = "Drives",
         .full = "mc_get_store_phydrives",
         .delta = "mc_delta_store_phydrives",
         .store = kDriveStore,
         .lock = kControllerStore,
         .remembers_stamps = true,
         .tells_gone = true,
         .reply_header_size = kDriveHeaderSize,
         .count_offset = 6,
         .record_size = kDriveSize,
         .renderer = nullptr,
         .ready = 0,
         .not_ready = 0,
         .file_header = [](size_t devices, uint8_t) { return little_endian().u32(devices); },
         .stored =
             [](const Device &device, uint32_t number) {
               return with_product(numbered_drive(device.number, device.stamp).stored(), number);
             },
         .answer = drive_answer},
    Kind{.name = "VirtualDrives",
         .full = "mc_get_store_virtdrives",
         .delta = "mc_delta_store_virtdrives",
         .store = kVirtualDriveStore,
         .lock = kControllerStore,
         .remembers_stamps = true,
         .tells_gone = true,
         .reply_header_size = kVirtualDriveHeaderSize,
         .count_offset = 3,
         .record_size = kVirtualDriveSize,
         .renderer = nullptr,
         .ready = 0,
         .not_ready = 0,
         .file_header = [](size_t, uint8_t) { return Bytes(); },
         .stored = [](const Device &device, uint32_t number) { return virtual_drive(device, number).stored(); },
         .answer = virtual_drive_answer},
    Kind{.name = "Bbus",
         .full = "mc_get_store_bbu",
         .delta = "mc_delta_store_bbu",
         .store = kBbuStore,
         .lock = kControllerStore,
         .remembers_stamps = true,
         .tells_gone = false,
         .reply_header_size = kBbuHeaderSize,
         .count_offset = 3,
         .record_size = kBbuSize,
         .renderer = nullptr,
         .ready = 0,
         .not_ready = 0,
         .file_header = [](size_t, uint8_t) { return Bytes(); },
         .stored = [](const Device &device, uint32_t number) { return bbu(device, number).stored(); },
         .answer = bbu_answer},
    Kind{.name = "NvmeControllers",
         .full = "mc_get_nvme_controller",
         .delta = "mc_event_nvme_controller",
         .store = kNvmeControllerStore,
         .lock = kNvmeControllerStore,
         .remembers_stamps = false,
         .tells_gone = true,
         .reply_header_size = 0,
         .count_offset = 0,
         .record_size = 0,
         .renderer = "xmlize_nvme_controller",
         .ready = 4,
         .not_ready = 3,
         .file_header = [](size_t, uint8_t state) { return Bytes().u8(state); },
         .stored = [](const Device &device, uint32_t number) { return nvme_controller(device, number).stored(); },
         .answer = nvme_controller_answer},
    Kind{.name = "NvmeDrives",
         .full = "mc_get_nvme_phy_drive",
         .delta = "mc_event_nvme_phy_drive",
         .store = kNvmeDriveStore,
         .lock = kNvmeControllerStore,
         .remembers_stamps = true,
         .tells_gone = true,
         .reply_header_size = 0,
         .count_offset = 0,
         .record_size = 0,
         .renderer = "xmlize_nvme_phy_drive",
         .ready = 4,
         .not_ready = 3,
         .file_header = [](size_t devices, uint8_t state) { return little_endian().u32(devices).u8(state); },
         .stored = [](const Device &device, uint32_t number) { return nvme_drive(device, number).stored(); },
         .answer = nvme_drive_answer},
};
constexpr size_t kRaidKinds = 4;

const Device *find(const Generation &generation, size_t number) {
  const auto found = std::ranges::find(generation.devices, number, &Device::number);
  return found == generation.devices.end() ? nullptr : &*found;
}

}  // namespace

std::span<const Kind> kinds() { return kKinds; }
std::span<const Kind> raid_kinds() { return kinds().first(kRaidKinds); }
std::span<const Kind> nvme_kinds() { return kinds().subspan(kRaidKinds); }

Generation generation(uint32_t number) {
  Generation generation{.number = number};
  if (number == 0) return generation;

  generation.devices.push_back({0, mirrored_stamp(number)});
  const size_t most = 1 + scattered(number, 0) % kMostDevices;
  for (uint32_t device = 1; device < most; ++device)
    if (scattered(number, device) % 4 != 0)
      generation.devices.push_back({device, mirrored_stamp(number / (2 + device % 5))});
  return generation;
}

Bytes store_file(const Kind &kind, const Generation &generation) { return store_file(kind, generation, kind.ready); }

Bytes store_file(const Kind &kind, const Generation &generation, uint8_t state) {
  Bytes file = kind.file_header(generation.devices.size(), state);
  for (const Device &device : generation.devices) file += kind.stored(device, generation.number);
  return file;
}

News everything(const Generation &now) { return {.now = now, .before = {}, .reported = now.devices}; }

News difference(const Kind &kind, const Generation &before, const Generation &now) {
  News news{.now = now, .before = before};
  for (const Device &device : now.devices) {
    const Device *const known = find(before, device.number);
    if (!known || !kind.remembers_stamps || known->stamp != device.stamp) news.reported.push_back(device);
  }
  for (const Device &device : before.devices)
    if (kind.tells_gone && !find(now, device.number)) news.gone.push_back(device);
  return news;
}

uint32_t generation_in(const Bytes &answer) {
  const auto is_digit = [](uint8_t byte) { return isdigit(byte) != 0; };
  const uint8_t *const end = answer.data() + answer.size();
  for (const uint8_t *at = std::find(answer.data(), end, 'G'); at != end; at = std::find(at + 1, end, 'G')) {
    const uint8_t *const digits = at + 1;
    if (end - digits < ptrdiff_t{kGenerationDigits} || !std::all_of(digits, digits + kGenerationDigits, is_digit))
      continue;
    return static_cast<uint32_t>(std::stoul(std::string(digits, digits + kGenerationDigits)));
  }
  return 0;
}

}  // namespace tests
