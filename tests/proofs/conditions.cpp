// Rows that say wrongly when their field means something, one for each way: MISTAKE chooses. None of the tables may
// compile, and the message must name the row.

#include "shared/field_proofs.h"

namespace mcserver {
namespace {

struct __attribute__((packed)) Fan {
  uint8_t has_sensor;
  uint8_t is_plugged;
  char model[8];
  uint16_t speed;
  uint8_t boost;
  uint8_t is_warm;
};

constexpr OnlyIf kOfWarmth[] = {
    {"has_sensor"},
    {"sensor"},               // no field of the record
    {"is_warm"},              // the field itself
    {"speed"},                // neither a flag nor a text
    {"model"},                // a text, but not how it begins
    {"has_sensor", "TURBO"},  // how a flag begins
    {"speed", "TURBO"},       // how a number begins
    {nullptr, "TURBO"},       // how no field begins
};

constexpr auto kFan = std::to_array<Field>({
    flag(FIELD(Fan, has_sensor, "sensor: %s\n")),
    inverted_flag(FIELD(Fan, is_plugged, "missing: %s\n")),
    FIELD(Fan, model, "model: %s\n"),
    FIELD(Fan, speed, "speed: %d\n", {.only_if = {"is_plugged"}}),
    FIELD(Fan, boost, "boost: %d\n", {.only_if = {"model", "TURBO"}}),
    flag(FIELD(Fan, is_warm, "warm: %s\n", {.only_if = kOfWarmth[MISTAKE]})),
});
static_assert(describes<Fan, kFan>());

}  // namespace
}  // namespace mcserver
