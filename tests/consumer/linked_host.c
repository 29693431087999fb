/* A host in C that links against the plug-in. */
#include <mcserver_storage.h>
#include <stdlib.h>
#include <string.h>

int32_t mc_debug_level = 3;
int32_t use_cmclog;
FILE *outfp;

/* Neither call below needs a larger buffer. */
uint8_t *mc_grow_attribute_buffer(void *ctx, uint32_t size, uint32_t *available) {
  (void)ctx;
  (void)size;
  *available = 0;
  return NULL;
}

int memset_s(void *dest, size_t dest_size, int fill, size_t count) {
  if (count > dest_size) return -1;
  memset(dest, fill, count);
  return 0;
}

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

static void check(int holds, const char *what) {
  if (holds) return;
  fprintf(stderr, "linked_host: does not hold: %s\n", what);
  exit(1);
}

int main(void) {
  static uint8_t reply[sizeof(StoreReplyHeader) + sizeof(StorCtlrInfo)];
  const StorCtlrInfo *record = (const StorCtlrInfo *)(reply + sizeof(StoreReplyHeader));
  struct stat file;
  CtlrSummary none;
  CtlrSummary gone;
  uint32_t length = 1;

  check(sizeof file.st_mtime == 8 && sizeof file.st_size == 8, "times and file sizes have 64 bits");

  outfp = tmpfile();
  check(outfp != NULL, "there is a file to trace to");
  check(mc_get_store_sasexpanders(NULL, NULL, 0, &length) == MC_STORE_UNAVAILABLE, "a null buffer is refused");
  check(length == 0, "a refused call has no reply");
  check(ftell(outfp) > 0, "the plug-in traces to this host's file");

  memset(&none, 0, sizeof none);
  memset(&gone, 0, sizeof gone);
  strcpy(gone.serial_number, "SV12345678");
  gone.vendor_id = gone.device_id = gone.subvendor_id = gone.subdevice_id = 0x1234;
  add_deleted_ctlrs(reply, 0, &none, 1, &gone);
  check(((const StoreReplyHeader *)reply)->count == 1, "the controller that is gone is reported");
  check(record->controller_status == 4, "it is reported as gone");
  check(strcmp(record->serial_number, "SV12345678") == 0, "its serial number came through this host's strncpy_s");
  return 0;
}
