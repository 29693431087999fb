// What tells one device of a kind from another: members that its record and its summary entry have alike.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "shared/narrowed.h"

namespace mcserver {

struct IdentityMember {
  const char *name;
  size_t in_record;
  size_t in_summary;
  size_t width;
  bool is_text;  // compared up to its NUL; otherwise a number of one byte
};

void identity_members_are_texts_or_bytes();  // not constant, so that reaching it does not compile

template <typename InRecord, typename InSummary>
consteval IdentityMember make_identity_member(const char *name, size_t in_record, size_t in_summary) {
  const bool is_text = std::is_array_v<InRecord>;
  if (!std::is_same_v<InRecord, InSummary> || (!is_text && sizeof(InRecord) > 1)) identity_members_are_texts_or_bytes();
  return {name, in_record, in_summary, sizeof(InRecord), is_text};
}

#define IDENTITY_MEMBER(record, summary, member)                                         \
  ::mcserver::make_identity_member<decltype(record::member), decltype(summary::member)>( \
      #member, offsetof(record, member), offsetof(summary, member))

// What is left of a member when it comes to comparing.
struct IdentityPlace {
  uint16_t in_record;
  uint16_t in_summary;
  uint8_t width;
  bool is_text;
};

template <const auto &members>
consteval auto make_identity_places() {
  std::array<IdentityPlace, members.size()> places = {};
  for (size_t i = 0; i < places.size(); ++i)
    places[i] = {narrowed<uint16_t>(members[i].in_record), narrowed<uint16_t>(members[i].in_summary),
                 narrowed<uint8_t>(members[i].width), members[i].is_text};
  return places;
}

template <const auto &members>
inline constexpr auto kIdentityPlaces = make_identity_places<members>();

}  // namespace mcserver
