// How a made-up inventory is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "shared/reply_buffer.h"

namespace mcserver::raid {

// Makes room for the whole reply, and sets the length to what it needs, or to 0 when the host refuses. `function` and
// `line` tell where that is traced.
bool make_room_for_simulation(const char *function, int line, ReplyBuffer &reply, uint32_t needed, uint32_t *len);

// Writes the text and its terminator; the rest of the field stays as the buffer held it.
template <size_t Width, size_t Size>
void write_text(char (&field)[Width], const char (&text)[Size]) {
  static_assert(Size <= Width);
  memcpy(field, text, Size);
}

}  // namespace mcserver::raid
