// SAS expanders: there are none, but in the simulation.

#include "model/kinds.h"
#include "model/raid.h"

namespace model {
namespace expander_model {

class Expanders : public Model {
 public:
  using Model::Model;

  int32_t call(const std::string &entry_point, tests::HostReplyBuffer *buffer, uint32_t *length) override {
    const bool is_full = entry_point == "mc_get_store_sasexpanders";
    *length = 0;
    if (!buffer) {
      world.trace(entry_point, is_full ? 2764 : 2826, "buf is NULL\n");
      return kUnavailable;
    }
    return is_full && world.exists(kSimulationMarker) ? simulate(*buffer, length) : kNoData;
  }

 private:
  int32_t simulate(tests::HostReplyBuffer &buffer, uint32_t *length) {
    Reply reply{buffer};
    if (reply.size < 100 && !reply.grow(100, 100)) {
      trace_too_large(world, "mc_get_store_sasexpanders", 2780, 100, reply.size);
      return kTooLarge;
    }
    reply.put(0, Bytes::hex("00 00 01 54 00 00 00 00"));
    reply.put(16, Bytes::hex("01 05 02 32 65 14 05 00 65 64 63 62 FF FE FD FC"));
    *length = 100;
    return 0;
  }
};

}  // namespace expander_model

Kind expanders() {
  using namespace expander_model;
  return {.name = "expanders",
          .entry_points = {"mc_get_store_sasexpanders", "mc_delta_store_sasexpanders"},
          .files = {{kRaidLock, lock_file}},
          .markers = {kSimulationMarker, kRecordMarker},
          .faults = {{"stat", 1, EACCES, false}},
          .model = make_model<Expanders>};
}

}  // namespace model
