/* The public header is C. What includes this proves in C which layouts it promises. */
#pragma once

#include "mcserver_storage.h"

#define AT(record, member, offset, width)                                                             \
  _Static_assert(offsetof(record, member) == (offset) && sizeof(((record *)NULL)->member) == (width), \
                 #record "." #member " is misplaced")
