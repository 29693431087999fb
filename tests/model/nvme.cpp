#include "model/nvme.h"

#include <cstring>

namespace model {
namespace {

constexpr Lock kNvmeLocking = {
    .path = kNvmeLock,
    .open_failed = {211, "%s Open failed: %s"},
    .no_descriptor = {216, "Failed to get fd for %s: %s"},
    .not_locked = {221, "Failed to lock File %s: %s"},
    .data_open_failed = {248, "%s Open failed: %s"},
    .not_unlocked = {187, "Failed to UnLock File %s: %s"},
};

std::string word(const std::vector<std::string> &words, size_t value) {
  return value < words.size() ? words[value] : "";
}

}  // namespace

LockedFile lock_and_open_nvme(World &world, const char *path) { return lock_and_open(world, kNvmeLocking, path); }

void unlock_and_close_nvme(World &world) { unlock_and_close(world, kNvmeLocking); }

void log_new_state(World &world, int line, int old_state, int new_state, int64_t old_time, int64_t new_time) {
  const auto text_of = [&](int64_t time) { return world.works("localtime_r") ? time_text(time) : ""; };
  const std::string old_text = text_of(old_time);
  const std::string new_text = text_of(new_time);
  world.log(kNvmeSource, line,
            printed("NVME subsystem state changed, prevState(%d), newState(%d), prevModTime(%lld, %s), "
                    "curModTime(%lld, %s)\n",
                    old_state, new_state, static_cast<long long>(old_time), old_text.c_str(),
                    static_cast<long long>(new_time), new_text.c_str()));
}

std::string state_word(uint8_t state) {
  return word({"Unknown", "Uninitialized", "Initializing", "Aux_Power", "Main_Power"}, state);
}

std::string status_word(uint8_t status) {
  return word({"Unknown", "Optimal", "Unresponsive", "Moderate_Fault", "Severe_Fault", "Deleted", "Degraded"}, status);
}

std::string xml_summary(const std::string &element, uint32_t count, uint8_t state) {
  return "<" + element + "-summary count=\"" + std::to_string(count) + "\" state=\"" + state_word(state) + "\" />";
}

int32_t answer(World &world, tests::HostReplyBuffer *buffer, const std::string &xml, uint32_t count,
               const TraceSite &failed, uint32_t *length) {
  const uint32_t room = count * 1024 + 100;
  if (!world.works("calloc")) {
    world.trace(failed.function, failed.line,
                printed("%s: xmlBuf calloc(%d) failed: %s!\n", failed.function, static_cast<int>(room),
                        strerror(world.error())));
    return kNoBuffer;
  }
  // A text that is too long ends with a NUL in the last byte.
  const std::string rendered = xml.size() < room ? xml : xml.substr(0, room - 1) + '\0';
  const auto size = static_cast<uint32_t>(rendered.size());
  Reply reply{*world.host};
  if (!buffer) reply.bytes = nullptr;
  if (size > reply.size && !reply.grow(size, size)) return kNoBuffer;
  if (!reply.bytes) return kUnavailable;
  reply.put(0, tests::little_endian().text(rendered, size));
  *length = size;
  return 0;
}

Bytes any_record(Choices &choices, size_t size, const std::vector<TextField> &texts, bool runs_over) {
  Bytes record = choices.bytes(size);
  if (runs_over) return record;
  for (const TextField &text : texts) record.put(text.offset + choices.below(text.width), tests::little_endian().u8(0));
  return record;
}

uint8_t any_state(Choices &choices) {
  return static_cast<uint8_t>(choices.one_of<uint32_t>({kMainPower, kMainPower, 3, choices.below(8)}));
}

}  // namespace model
