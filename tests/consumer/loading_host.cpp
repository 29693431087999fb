// A host in C++ that loads the plug-in: loading_host PATH
#include <dlfcn.h>
#include <mcserver_storage.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
int32_t mc_debug_level = 3;
int32_t use_cmclog;
FILE *outfp;

// No call below needs a larger buffer.
uint8_t *mc_grow_attribute_buffer(void *, uint32_t, uint32_t *available) {
  *available = 0;
  return nullptr;
}

int memset_s(void *dest, size_t dest_size, int fill, size_t count) {
  if (count > dest_size) return -1;
  std::memset(dest, fill, count);
  return 0;
}

int strncpy_s(char *dest, size_t dest_size, const char *src, size_t count) {
  if (count > dest_size) return -1;
  std::strncpy(dest, src, count);
  return 0;
}

int memcpy_s(void *dest, size_t dest_size, const void *src, size_t count) {
  if (count > dest_size) return -1;
  std::memcpy(dest, src, count);
  return 0;
}
}

static void check(bool holds, const char *what) {
  if (holds) return;
  std::fprintf(stderr, "loading_host: does not hold: %s\n", what);
  std::exit(1);
}

int main(int, char **argv) {
  void *plugin = dlopen(argv[1], RTLD_NOW);
  if (!plugin) std::fprintf(stderr, "%s\n", dlerror());
  check(plugin, "the plug-in can be loaded");

  const auto expanders =
      reinterpret_cast<decltype(&mc_delta_store_sasexpanders)>(dlsym(plugin, "mc_delta_store_sasexpanders"));
  check(expanders, "the entry point is there");
  outfp = std::tmpfile();
  check(outfp, "there is a file to trace to");
  uint8_t reply[100];
  uint32_t length = 1;
  check(expanders(nullptr, reply, sizeof reply, &length) == MC_STORE_NO_DATA && length == 0, "expanders have no data");
  check(expanders(nullptr, nullptr, 0, &length) == MC_STORE_UNAVAILABLE, "a null buffer is refused");
  check(std::ftell(outfp) > 0, "the plug-in traces to this host's file");

  const auto name = reinterpret_cast<decltype(&enum_name)>(dlsym(plugin, "enum_name"));
  const auto words = reinterpret_cast<decltype(&nvme_status_names)>(dlsym(plugin, "nvme_status_names"));
  check(name && words && std::strcmp(name(5, *words), "Deleted") == 0, "status 5 is called Deleted");
  check(dlclose(plugin) == 0, "the plug-in can be unloaded");
  return 0;
}
