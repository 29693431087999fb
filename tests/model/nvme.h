// What the NVMe kinds share: the lock, the words, the answer in XML.
#pragma once

#include <string>
#include <vector>

#include "model/choices.h"
#include "model/lock.h"
#include "model/reply.h"
#include "model/world.h"

namespace model {

inline constexpr char kNvmeLock[] = "/var/nvmectlr_info";
inline constexpr char kNvmeSource[] = "mcserver_nvme.cpp";

inline constexpr int32_t kNoBuffer = -4;

inline constexpr uint8_t kMainPower = 4;
inline constexpr uint8_t kDeleted = 5;

LockedFile lock_and_open_nvme(World &world, const char *path);
void unlock_and_close_nvme(World &world);

// The subsystem's state is another one than at the call before.
void log_new_state(World &world, int line, int old_state, int new_state, int64_t old_time, int64_t new_time);

// The words of a state and of a record's status; empty where there is none.
std::string state_word(uint8_t state);
std::string status_word(uint8_t status);

// `element` is what the names of this kind's elements begin with.
std::string xml_summary(const std::string &element, uint32_t count, uint8_t state);

// Renders the text in a buffer of 1024 bytes for each record and 100 more, and copies it into the host's. `failed`
// tells where a failing allocation is traced.
struct TraceSite {
  const char *function;
  int line;
};
int32_t answer(World &world, tests::HostReplyBuffer *buffer, const std::string &xml, uint32_t count,
               const TraceSite &failed, uint32_t *length);

// A record whose texts end within their fields, unless they run over.
struct TextField {
  size_t offset;
  uint32_t width;
};
Bytes any_record(Choices &choices, size_t size, const std::vector<TextField> &texts, bool runs_over);

// A state, which mostly is the one in which records are compared.
uint8_t any_state(Choices &choices);

}  // namespace model
