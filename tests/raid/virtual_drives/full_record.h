// One virtual drive record with a value of its own in every field, and what a dump makes of it.
#pragma once

#include <string>

#include "host/bytes.h"

namespace tests {

struct HotSpareBytes {
  uint8_t controller;
  uint8_t slot;
  uint8_t span;
  uint64_t starting_block;
  uint64_t number_of_blocks;
  uint8_t tail;

  Bytes in(Bytes::Order order) const {
    return Bytes(order).u8(controller).u8(slot).u8(span).u64(starting_block).u64(number_of_blocks).u8(tail);
  }
};

// Two of the 256 count; the third and the last hold something, too.
inline Bytes full_hot_spares(Bytes::Order order) {
  const HotSpareBytes beyond = {161, 162, 163, 0xA135657500112206, 0xA236667600112207, 164};
  return Bytes::repeated(5120, 0)
      .put(0, HotSpareBytes{149, 150, 151, 0x8232627200112202, 0x8333637300112203, 152}.in(order))
      .put(20, HotSpareBytes{153, 154, 155, 0x8434647400112204, 0x8535657500112205, 156}.in(order))
      .put(40, beyond.in(Bytes::Order::kLittle))
      .put(5100, beyond.in(Bytes::Order::kLittle));
}

// The second layout of the member drives: 256, of which three count, as in the first.
inline Bytes full_members_v5() {
  return Bytes::repeated(512, 0)
      .put(0, Bytes().u8(165).u8(166).u8(167).u8(168).u8(169).u8(170).u8(171).u8(172))
      .put(510, Bytes().u8(173).u8(174));
}

// No number is the same backwards, and most would come out negative if they were taken for signed ones.
inline Bytes full_virtual_drive_record(Bytes::Order order) {
  Bytes record(order);
  record
      .u8(129)                                       // controller_index
      .u8(130)                                       // target_id
      .text("600605B00D1E2FA32C1B0A9988776655", 33)  // guid
      .text("archive-west", 16)                      // name
      .u8(131)                                       // status
      .u64(0x8131617100112201)                       // size
      .u16(0x8232)                                   // raid_level
      .u32(0x83336373)                               // strip_size
      .u8(132)                                       // drives_per_span
      .u8(133)                                       // span_depth
      .u8(134)                                       // access_policy
      .u8(135)                                       // io_policy
      .u8(136)                                       // read_ahead_policy
      .u8(137)                                       // current_write_cache_policy
      .u8(138)                                       // requested_write_cache_policy
      .u8(139)                                       // drive_cache_policy
      .u8(65)                                        // allow_background_init
      .u8(0)                                         // auto_snapshot
      .u8(66)                                        // auto_delete_oldest
      .u8(3);                                        // num_physical_drives
  for (uint8_t member = 0; member < 8; ++member)     // pd
    record.u8(uint8_t{0xD0} + member).u8(uint8_t{0xE0} + member);
  record.u8(2);                      // num_hot_spares
  record += full_hot_spares(order);  // hot_spares
  record
      .u64(0x8737677700112206)  // remaining_space
      .u8(175)                  // reconstruction_status
      .u8(176)                  // reconstruction_percent_complete
      .u32(0x8838687A)          // reconstruction_start_timestamp
      .u32(0x8939697B)          // reconstruction_end_timestamp
      .u8(177)                  // consistency_check_status
      .u8(178)                  // consistency_check_percent_complete
      .u32(0x8A3A6A7C)          // consistency_check_start_timestamp
      .u32(0x8B3B6B7D)          // consistency_check_end_timestamp
      .u8(179)                  // init_status
      .u8(180)                  // init_percent_complete
      .u32(0x8C3C6C7E)          // init_start_timestamp
      .u32(0x8D3D6D7F)          // init_end_timestamp
      .u8(67)                   // boot_drive
      .u32(0x8E3E6E80);         // mod_timestamp
  record += full_members_v5();  // pd_v5
  record
      .u64(0x9040708000112207)  // start_block_v12
      .u64(0x9141718100112208)  // span_block_count_v12
      .u64(0x9242728200112209)  // smallest_pd_block_count_v12
      .u32(0x9343738A)          // pd_block_size_v12
      .u8(0xA7);                // vd_sed_state
  return record;
}

inline constexpr char kVirtualDriveTitle[] =
    "\n\n\nVirtual Drive ===================**************===============\n\n\n";

inline std::string full_virtual_drive_text() {
  return std::string(kVirtualDriveTitle) +
         "Controller index = 129\n"
         "Target ID = 130\n"
         "GUID = 600605B00D1E2FA32C1B0A9988776655\n"
         "Name = archive-west\n"
         "Status = 131 (0: optimal, 1: cacheDegraded, 2:Partially degraded, 3:Degraded 4:OFFLine 5:UNK\n"
         "Size = -9137415030997704191\n"
         "Raid Level = 0x8232\n"
         "Strip size = -2093784205\n"
         "Drive per span = 132\n"
         "Span Depth = 133\n"
         "Access policy = 134 (0:RW, 1:UNK, 2:RO, 3:Blocked)\n"
         "IO Policy = 135 (0:Direct 1:Cached)\n"
         "Read ahead policy = 136 (0:Ahead 1:Normal)\n"
         "Current write cache policy = 137 (0:UNK, 3:WB-Bad-BBU, 2:WriteBack 1:WriteThru)\n"
         "Requested write cache policy = 138 (0:UNK, 3:WB-Bad-BBU, 2:WriteBack 1:WriteThru)\n"
         "Drive cache policy = 139 (0:Unchanged, 1:Enable, 2:Disable\n"
         "Allow background init: true\n"
         "Auto Snapshot: false\n"
         "Auto delete oldest: true\n"
         "Num of physical drives =3\n"
         "PD[0].controller_index = 208\n"
         "PD[0].slot_number = 224\n"
         "PD[1].controller_index = 209\n"
         "PD[1].slot_number = 225\n"
         "PD[2].controller_index = 210\n"
         "PD[2].slot_number = 226\n"
         "PD_v5[0].controller_index = 165\n"
         "PD_v5[0].slot_number = 166\n"
         "PD_v5[1].controller_index = 167\n"
         "PD_v5[1].slot_number = 168\n"
         "PD_v5[2].controller_index = 169\n"
         "PD_v5[2].slot_number = 170\n"
         "Num of hot spare drives =2\n"
         "HotSpare[0].controller_index = 149\n"
         "HotSpare[0].slot_number = 150\n"
         "HotSpare[0].span = 151\n"
         "HotSpare[0].starting block = -9065074858176470526\n"
         "HotSpare[0].number of blocks = -8992734685355236861\n"
         "HotSpare[0].slot_number = 152\n"
         "HotSpare[1].controller_index = 153\n"
         "HotSpare[1].slot_number = 154\n"
         "HotSpare[1].span = 155\n"
         "HotSpare[1].starting block = -8920394512534003196\n"
         "HotSpare[1].number of blocks = -8848054339712769531\n"
         "HotSpare[1].slot_number = 156\n"
         "Remaining space = -8703373994070302202\n"
         "Reconstruction status = 175\n"
         "Reconstruction percent complete = 176\n"
         "Reconstruction start timestamp = -2009569158\n"
         "Reconstruction end timestamp = -1992726149\n"
         "Consistency chk opn progress status = 177\n"
         "Consistency chk opn progress percent complete = 178\n"
         "Consistency chk opn progress start timestamp = -1975883140\n"
         "Consistency chk opn progress end timestamp = -1959040131\n"
         "Init opn progress status = 179\n"
         "Init opn progress percent complete = 180\n"
         "Init opn progress start timestamp = -1942197122\n"
         "Init opn progress end timestamp = -1925354113\n"
         "Boot drive: true\n"
         "Mod timestamp = -1908511104\n"
         "start_block_v12 = -8052312438679199225 (0x9040708000112207)\n"
         "span_block_count_v12 = -7979972265857965560 (0x9141718100112208)\n"
         "smallest_pd_block_count_v12 = -7907632093036731895 (0x9242728200112209)\n"
         "pd_block_size_v12 = -1824296054 (0x9343738a)\n"
         "VD SED state = 0xa7\n";
}

}  // namespace tests
