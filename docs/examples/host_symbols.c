/*
 * The seven symbols that the plug-in takes from its host. A host in C or C++ compiles this file as a part of itself;
 * any other loads it as a shared object, with RTLD_GLOBAL, before the plug-in.
 */
#include "host_symbols.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "mcserver_storage.h"

int32_t mc_debug_level = 0; /* 3 or more: the plug-in traces to outfp */
int32_t use_cmclog = 0;
FILE *outfp = NULL;

enum { LARGEST_SIZE = 64 * 1024 * 1024 };

uint8_t *mc_grow_attribute_buffer(void *ctx, uint32_t size, uint32_t *available) {
  struct reply *reply = ctx;
  uint8_t *grown = size <= LARGEST_SIZE ? realloc(reply->bytes, size) : NULL;
  if (grown) {
    reply->bytes = grown;
    reply->size = size;
  }
  *available = reply->size; /* less than `size` is a refusal */
  return reply->bytes;
}

int memset_s(void *dest, size_t dest_size, int fill, size_t count) {
  if (count > dest_size) return -1;
  memset(dest, fill, count);
  return 0;
}

/* As strncpy: up to the NUL, then NULs. A text that fills its field has none. */
int strncpy_s(char *dest, size_t dest_size, const char *src, size_t count) {
  if (count > dest_size) return -1;
  strncpy(dest, src, count);
  return 0;
}

int memcpy_s(void *dest, size_t dest_size, const void *src, size_t count) {
  if (count > dest_size) return -1;
  memcpy(dest, src, count);
  return 0;
}
