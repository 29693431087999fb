/*
 * A small host: it shows the RAID controllers, then reads lines and answers each with what has changed since.
 */
#include <arpa/inet.h>
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "mcserver_storage.h"

/* ---------------------------------------------------------------- the host symbols */

int32_t mc_debug_level = 0; /* 3 or more: the plug-in traces to outfp */
int32_t use_cmclog = 0;
FILE *outfp = NULL;

/* The reply buffer, which is what `ctx` points to. No simulated reply needs more than 64 KiB: that never moves. */
struct reply {
  uint8_t *bytes;
  uint32_t size;
};
enum { FIRST_SIZE = 64 * 1024, LARGEST_SIZE = 64 * 1024 * 1024 };

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

/* ---------------------------------------------------------------- one call, and what it brought */

typedef int32_t entry_point(void *ctx, uint8_t *buf, uint32_t bufsize, uint32_t *len);

static void show_controller(const StorCtlrInfo *record) {
  printf("  %.*s, serial number %.*s: ", (int)sizeof record->controller, record->controller,
         (int)sizeof record->serial_number, record->serial_number);
  if (record->controller_status == MC_STORE_CONTROLLER_GONE) /* only identity and ids are written */
    printf("gone\n");
  else
    printf("firmware %.*s, vendor id 0x%04x, status %d\n", (int)sizeof record->firmware_version,
           record->firmware_version, ntohs(record->vendor_id), record->controller_status);
}

static void ask(entry_point *call, struct reply *reply) {
  uint32_t length = 0;
  const int32_t status = call(reply, reply->bytes, reply->size, &length);
  if (status != MC_STORE_SUCCESS) {
    printf("no answer: %d\n", (int)status);
    return;
  }
  if (length == 0) {
    printf("nothing has changed\n");
    return;
  }

  const StoreReplyHeader *header = (const StoreReplyHeader *)reply->bytes;
  if (ntohl(header->record_size) != sizeof(StorCtlrInfo)) {
    printf("a simulated reply\n");
    return;
  }
  printf("subsystem state %d, controllers: %d\n", header->state, header->count);
  const StorCtlrInfo *records = (const StorCtlrInfo *)(header + 1);
  for (int i = 0; i < header->count; ++i) show_controller(&records[i]);
}

/* ---------------------------------------------------------------- the program */

static entry_point *find(void *plugin, const char *name) {
  entry_point *found = NULL;
  *(void **)&found = dlsym(plugin, name);
  if (!found) {
    fprintf(stderr, "%s\n", dlerror());
    exit(1);
  }
  return found;
}

int main(int argc, char **argv) {
  void *plugin = dlopen(argc > 1 ? argv[1] : "libmcserver_storage.so.1", RTLD_NOW);
  if (!plugin) {
    fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  struct reply reply = {.bytes = calloc(1, FIRST_SIZE), .size = FIRST_SIZE};
  if (!reply.bytes) return 1;

  ask(find(plugin, "mc_get_store_ctrls"), &reply);
  printf("Enter asks what has changed.\n");
  fflush(stdout);
  while (getchar() == '\n') {
    ask(find(plugin, "mc_delta_store_ctrls"), &reply);
    fflush(stdout);
  }

  free(reply.bytes);
  dlclose(plugin);
  return 0;
}
