/*
 * The reply buffer of the example hosts: what the handle `ctx` of their calls points to.
 */
#ifndef HOST_SYMBOLS_H
#define HOST_SYMBOLS_H

#include <stdint.h>

struct reply {
  uint8_t *bytes; /* from malloc or its like */
  uint32_t size;
};

/* No simulated reply needs more. A buffer that begins with this size need not move for one. */
enum { FIRST_SIZE = 64 * 1024 };

#endif
