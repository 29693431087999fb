#include "raid/entry_point.h"

#include "mcserver_storage.h"
#include "shared/markers.h"
#include "shared/trace.h"

namespace mcserver::raid {
namespace {

constexpr char kSimulationMarker[] = "/debug/mctool_storage_debug";

int32_t refuse_null_buffer(const EntryPoint &entry_point) {
  TRACE(entry_point.name, entry_point.null_buffer_line, "buf is NULL\n");
  return MC_STORE_UNAVAILABLE;
}

}  // namespace

int32_t get_full(const EntryPoint &entry_point, Retrieve *retrieve, Simulate *simulate, void *ctx, uint8_t *buf,
                 uint32_t bufsize, uint32_t *len) {
  if (!buf) return refuse_null_buffer(entry_point);
  if (!len) return MC_STORE_UNAVAILABLE;  // the host's error
  if (marker_exists(kSimulationMarker)) return simulate(ctx, buf, bufsize, len);
  return retrieve(ctx, buf, bufsize, len, kFull);
}

int32_t get_delta(const EntryPoint &entry_point, Retrieve *retrieve, void *ctx, uint8_t *buf, uint32_t bufsize,
                  uint32_t *len) {
  if (!len) return MC_STORE_UNAVAILABLE;  // the host's error
  if (!buf) {
    *len = 0;
    return refuse_null_buffer(entry_point);
  }
  return retrieve(ctx, buf, bufsize, len, kDelta);
}

}  // namespace mcserver::raid
