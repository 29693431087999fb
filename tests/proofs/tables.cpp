// Tables that are wrong, one for each way: MISTAKE chooses. None of them may compile, and the message must name the
// row.

#include "records/kind_facts.h"
#include "shared/field_proofs.h"

namespace mcserver {
namespace {

struct __attribute__((packed)) Fan {
  uint8_t index;
  uint16_t speed;
  char name[8];
};

struct FanSummary {
  uint8_t index;
  uint16_t speed;
};

enum {
  kNone,
  kGap,
  kMissingRow,
  kConversion,
  kWords,
  kNoWords,
  kNoneValue,
  kXmlForm,
  kNoXml,
  kNoNumber,
  kIdentity,
  kGone,
  kGoneText = 16
};

constexpr Word kSpeeds[] = {{0, "stopped"}};
constexpr Meaning kSpeedMeaning = MISTAKE == kNoneValue ? Meaning{.none = {0x10000}} : Meaning{.none = {0xFFFF}};
constexpr Meaning kNameMeaning = MISTAKE == kWords     ? Meaning{.words = kSpeeds}
                                 : MISTAKE == kXmlForm ? Meaning{.xml = {"name", XmlForm::kDecimal}}
                                                       : Meaning{.xml = {"name"}};

constexpr Field kIndexRow = FIELD(Fan, index, "index: %d\n", {.xml = {"index", XmlForm::kDecimal}});
constexpr Field kSpeedRow = FIELD(Fan, speed, MISTAKE == kConversion ? "speed: %s\n" : "speed: %d\n", kSpeedMeaning);
constexpr Field kNameRow = FIELD(Fan, name, "name: %s\n", kNameMeaning);

#if MISTAKE == 1
constexpr auto kFan = std::to_array<Field>({kIndexRow, kNameRow});
#elif MISTAKE == 2
constexpr auto kFan = std::to_array<Field>({kIndexRow, kSpeedRow});
#elif MISTAKE == 5
constexpr auto kFan = std::to_array<Field>({kIndexRow, kSpeedRow, status(kNameRow)});
#else
constexpr auto kFan = std::to_array<Field>({kIndexRow, kSpeedRow, kNameRow});
#endif
static_assert(describes<Fan, kFan>());

constexpr auto kShown = MISTAKE == kNoXml ? rows_named(kFan, "speed") : rows_named(kFan, "index");
static_assert(makes_attributes<kShown>());

constexpr auto kOrder = std::to_array<Field>({kNameRow, MISTAKE == 14 ? kNameRow : kSpeedRow, kIndexRow});
#if MISTAKE == 15
static_assert(is_shown_by<kFan, kOrder, kShown>());
#else
static_assert(is_shown_by<kFan, kOrder>());
#endif

#if MISTAKE == 9
static_assert(describes_entry<Fan, kFan>());
#endif

#if MISTAKE == 10
constexpr auto kIdentityMembers = std::to_array<IdentityMember>({IDENTITY_MEMBER(Fan, FanSummary, speed)});
#else
constexpr auto kIdentityMembers = std::to_array<IdentityMember>({IDENTITY_MEMBER(Fan, FanSummary, index)});
#endif
constexpr records::KindFacts kFacts = {
    .name = "fans",
    .lock_path = "/var/storctlr_info",
    .store_path = "/var/storfan_info",
    .identity = kIdentityMembers,
    .gone = {MISTAKE == kGone       ? "status"
             : MISTAKE == kGoneText ? "name"
                                    : "speed",
             0},
    .greatest_count = 255,
};
static_assert(records::fits_table<kFan, kFacts>());

#if MISTAKE == 12
constexpr auto kLongText = std::to_array<IdentityMember>({{"name", 0, 0, 300, true}});
static_assert(kIdentityPlaces<kLongText>.size() == 1);
#elif MISTAKE == 13
struct Count {
  int32_t number;
};
constexpr auto kCount = std::to_array<Field>({FIELD(Count, number, "%ld, %d\n")});
static_assert(describes<Count, kCount>());
#endif

}  // namespace
}  // namespace mcserver
