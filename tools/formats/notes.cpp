#include "formats/notes.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <stdexcept>

namespace formats {
namespace {

using mcserver::Field;
using mcstore::Kind;

struct Note {
  std::string_view kind;  // empty: every kind that has the field
  Place place;
  std::string_view field;  // empty: the file, the reply or the record as a whole
  std::string_view text;
};

constexpr Note kNotes[] = {
    {"", Place::kReplyHeader, "type", "always 0x28"},
    {"", Place::kReplyHeader, "zero_1", "0"},
    {"", Place::kReplyHeader, "zero_2", "0"},
    {"", Place::kReplyHeader, "unwritten", "as the host's buffer held them"},
    {"", Place::kReplyHeader, "simulated", "1 in a simulated reply, else 0"},

    {"controllers", Place::kStoreFile, "subsystem_state", "a delta compares records while it is 2"},
    {"controllers", Place::kReplyHeader, "state",
     "the subsystem state of the store file; on two platforms 1 instead of 2 as long as there is no controller"},
    {"controllers", Place::kRecord, "index", "a dump prints it behind `smbios_pcislotname`"},
    {"controllers", Place::kRecord, "is_supported",
     "1 for a supported controller; a dump of any other has `controller`, `smbios_pcislotname` and this field alone"},
    {"controllers", Place::kRecord, "maintain_pd_fail_history_2",
     "a second flag of the same meaning, with the same line in a dump"},
    {"controllers", Place::kRecord, "reserved", "sent as it is stored"},
    {"controllers", Place::kGone, "",
     "the identity, `controller`, the four ids, `controller_type`, and 1 for `is_supported`; a controller without a "
     "serial number or with an id of 0 is never reported gone"},

    {"drives", Place::kStoreFile, "noofDrives",
     "what the collector announces; the file's size decides how many records are read"},
    {"drives", Place::kReplyHeader, "announced", "the low 16 bits of the store file's `noofDrives`"},
    {"drives", Place::kRecord, "",
     "a dump has the fields in another order, without a `temperature` that means nothing"},
    {"drives", Place::kReply, "",
     "a simulated reply announces two records, but three are written: the last one lies behind the length"},
    {"drives", Place::kGone, "", "the identity"},

    {"virtual-drives", Place::kReplyHeader, "eight", "always 8"},
    {"virtual-drives", Place::kRecord, "", "a dump has the entries of `pd_v5` right behind those of `pd`"},
    {"virtual-drives", Place::kRecord, "hot_spares",
     "the entries beyond the count are sent as they are stored, with little-endian numbers"},
    {"virtual-drives", Place::kRecord, "hot_spare_tail_byte",
     "its line in a dump has the name of another field, by which log tooling knows it"},
    {"virtual-drives", Place::kGone, "", "the identity, `name`, `controller_index` and `target_id`"},

    {"bbus", Place::kRecord, "remaining_capacity", "the one number that is little-endian in every reply"},
    {"bbus", Place::kRecord, "tfm_vendor",
     "this text and the three behind it are, in a reply, those of the flash module's own product data, where that can "
     "be read; dumps print them behind a reported record, as they are in the reply"},
    {"bbus", Place::kRecord, "unused", "sent as they are stored"},

    {"expanders", Place::kReply, "", "the only reply is a simulated one, so its record size is little-endian"},
    {"expanders", Place::kRecord, "data",
     "a simulated reply sets the first 16 bytes; the others are as the host's "
     "buffer held them"},

    {"nvme-controllers", Place::kStoreFile, "subsystem_state",
     "a value of the state names; an event compares records while it is Main_Power"},
    {"nvme-controllers", Place::kRecord, "",
     "a dump has the fields in the order of the attributes, `mod_timestamp` third, without those that mean nothing"},
    {"nvme-controllers", Place::kRecord, "status", "a value of the status names"},
    {"nvme-controllers", Place::kRecord, "switch_status",
     "in XML and dumps of a switch: as it is while it begins with Optimal; else `Severe_Fault` takes its place, and "
     "the "
     "text follows as `switch-status-desc`"},
    {"nvme-controllers", Place::kRecord, "link_status",
     "likewise, with `Moderate_Fault` and `link-status-desc`, behind the switch's own"},
    {"nvme-controllers", Place::kGone, "",
     "`controller_name`; the others may be those of a record that was not reported"},

    {"nvme-drives", Place::kStoreFile, "noofDrives",
     "the greatest number of drives that the file may hold, of which the low 16 bits count"},
    {"nvme-drives", Place::kStoreFile, "nvme_subsystem_info", "as `subsystem_state` of the controllers"},
    {"nvme-drives", Place::kRecord, "", "a dump has the fields in the order of the attributes, `mod_timestamp` last"},
    {"nvme-drives", Place::kRecord, "status", "a value of the status names"},
    {"nvme-drives", Place::kRecord, "reserved", "zero"},
    {"nvme-drives", Place::kGone, "",
     "the identity and the four ids; the others may be those of a record that was not reported"},
};

bool has_field(std::span<const Field> fields, std::string_view name) {
  return std::ranges::any_of(fields, [&](const Field &field) {
    return field.name == name || (field.entries && has_field(field.entries->fields, name));
  });
}

bool is_about(const Note &note, const Kind &kind) {
  if (!note.kind.empty() && note.kind != kind.name) return false;
  if (note.field.empty()) return true;
  if (note.place == Place::kStoreFile) return has_field(kind.store_header, note.field);
  if (note.place == Place::kReplyHeader) return kind.layout && has_field(kind.layout->header, note.field);
  return has_field(kind.fields, note.field) || (kind.variant && has_field(kind.variant->fields, note.field));
}

}  // namespace

std::vector<std::string> notes_about(const Kind &kind, Place place, std::string_view field) {
  std::vector<std::string> texts;
  for (const Note &note : kNotes)
    if (note.place == place && note.field == field && is_about(note, kind)) texts.emplace_back(note.text);
  return texts;
}

void refuse_stray_notes() {
  for (const Note &note : kNotes)
    if (std::ranges::none_of(mcstore::kinds(), [&](const Kind &kind) { return is_about(note, kind); }))
      throw std::logic_error(fmt::format("a note is about {} of {}, which there is not", note.field, note.kind));
}

}  // namespace formats
