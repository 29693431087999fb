/*
 * A small host: it shows the RAID controllers, then reads lines and answers each with what has changed since.
 * host_symbols.c is the other part of it.
 */
#include <arpa/inet.h>
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>

#include "host_symbols.h"
#include "mcserver_storage.h"

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
