// What a kind of device brings to the histories: its plain model, and what its files may look like.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/reply_buffer.h"
#include "model/choices.h"
#include "model/world.h"

namespace model {

// How the plug-in behaves, written from the description of its interface alone: slow and obvious.
class Model {
 public:
  explicit Model(World &machine) : world(machine) {}
  Model(const Model &) = delete;
  Model &operator=(const Model &) = delete;
  virtual ~Model() = default;

  // The host calls an entry point; the buffer is null when it passes none. `length` stays as it is where the plug-in
  // does not write it.
  virtual int32_t call(const std::string &entry_point, tests::HostReplyBuffer *buffer, uint32_t *length) = 0;

 protected:
  World &world;
};

// A file that comes, changes and goes.
struct ChangingFile {
  std::string path;
  Bytes (*content)(Choices &choices);
};

// What a decoder prints besides is World's. Decoders remember nothing.
using Decode = int32_t(World &world, const std::string &decoder, const std::string &from, const std::string &to);

struct Kind {
  std::string name;
  std::vector<std::string> entry_points;
  std::vector<ChangingFile> files;  // the lock file and the store file first: they are there most of the time
  std::vector<std::string> markers;
  std::vector<Fault> faults;  // that the model knows, each with the greatest nth that makes sense
  std::unique_ptr<Model> (*model)(World &world) = nullptr;
  // A marker with which the plug-in writes beyond what it asks for, as hosts are warned: they pass room enough.
  std::string overrunning = {};
  // A marker with which it writes on into the buffer that was passed in: a host that grants more does so in place.
  std::string in_place = {};
  // Instead of a model: the entry point is a decoder. The first directory has the files, the second one is for texts.
  Decode *decode = nullptr;
  std::vector<std::string> directories = {};
};

void PrintTo(const Kind &kind, std::ostream *out);

}  // namespace model
