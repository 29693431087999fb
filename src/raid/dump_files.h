// Where the RAID kinds' texts for service engineers go.
#pragma once

#include <cstdint>
#include <cstdio>

#include "shared/markers.h"

namespace mcserver::raid {

// Every kind's records go to one file.
inline Stream open_record_dump() { return open_dump("/var/mctool_stordebug", "/var/mctool_stordebug.txt"); }

// Prints a record to the stream that the caller brought; with none, to the dump, if that is switched on.
template <typename Record>
void dump_record(const Record *record, FILE *stream, void (*print)(const Record *, FILE *)) {
  if (!record) return;
  if (stream) return print(record, stream);

  const Stream dump = open_record_dump();
  if (dump) print(record, dump.get());
}

// Each kind's summary list has a file of its own.
struct ListDump {
  const char *marker;
  const char *path;
  const char *end = "\n";  // what follows the entries
};

template <typename Entry>
void dump_list(const ListDump &files, const Entry *list, int32_t count, const char *title,
               void (*print)(const Entry *, FILE *)) {
  if (!list || !title) return;
  const Stream dump = open_dump(files.marker, files.path);
  if (!dump) return;

  fprintf(dump.get(), "\n %s \n", title);
  for (int32_t i = 0; i < count; ++i) print(&list[i], dump.get());
  fputs(files.end, dump.get());
}

}  // namespace mcserver::raid
