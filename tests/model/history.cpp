#include "model/history.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>

#include "host/watched_host.h"

namespace model {
namespace {

using tests::CallOptions;
using tests::Growth;
using tests::HostReplyBuffer;

constexpr uint32_t kMostSteps = 12;
const File kDirectory = {.content = {}, .modified = 0, .is_directory = true};
constexpr uint32_t kMostOfAHost = 1u << 20;  // a host has no more room than that

struct Call {
  std::string entry_point;
  CallOptions options;
};

// The plug-in's machine.
class Machine : public tests::WatchedHost {
 public:
  std::string complaints() { return std::exchange(complaints_, {}); }

  void plant(const std::vector<Fault> &faults) {
    forget_faults();
    for (const Fault &fault : faults) {
      const host::Verdict verdict = {.fails = true, .error = fault.error};
      if (fault.fails_on)
        before_calls_from(fault.function, fault.nth, [=, this] { inject(fault.function, 1, verdict); });
      else
        inject(fault.function, fault.nth, verdict);
    }
  }

 private:
  void complain(const std::string &what) override { complaints_ += what + "\n"; }

  std::string complaints_;
};

// Lines of 16 bytes without those that are all zeros, as many as one cares to read.
std::string summary(const Bytes &content) {
  constexpr int kMostLines = 40;
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text = std::to_string(content.size()) + " bytes";
  int lines = 0;
  for (size_t offset = 0; offset < content.size(); offset += 16) {
    const Bytes line = content.slice(offset, std::min<size_t>(16, content.size() - offset));
    if (line == Bytes::repeated(line.size(), 0)) continue;
    if (++lines > kMostLines) return text + "\n    ...";
    text += printed("\n    %04zx:", offset);
    for (size_t i = 0; i < line.size(); ++i) text += {' ', kDigits[line[i] >> 4], kDigits[line[i] & 0xF]};
  }
  return text;
}

std::string without_addresses(const std::string &trace) {
  static const std::regex kPointer("_list= 0x[0-9a-f]+");
  return std::regex_replace(trace, kPointer, std::string("_list= ") + kAnAddress);
}

class History {
 public:
  History(const Kind &kind, Choices &choices) : kind_(kind), choices_(choices) {
    if (kind.model) model_ = kind.model(world_);
    trace_stream_ = outfp;
  }

  Finding live() {
    for (const std::string &directory : kind_.directories) put(directory, kDirectory);
    // The lock file and the store file, so that the simplest history is one with a reply.
    for (const ChangingFile &file : kind_.files) write(file);
    for (uint32_t step = 0; step < kMostSteps && differences_.empty(); ++step) {
      if (step > 0 && choices_.below(6) == 0) break;
      story_ += "step " + std::to_string(step + 1) + "\n";
      change_files();
      change_settings();
      plant_faults();
      if (kind_.decode)
        compare_decoding();
      else
        compare(next_call());
    }
    outfp = trace_stream_;
    machine_.unload();
    differ("what is left of the plug-in", std::string(), machine_.complaints());
    return {differences_, story_};
  }

 private:
  // ------------------------------------------------------------------------------------- what happens

  void change_files() {
    for (const ChangingFile &file : kind_.files) {
      if (choices_.one_in(2)) write(file);
      if (choices_.one_in(20)) remove(file.path);
    }
    for (const std::string &marker : kind_.markers) {
      if (!choices_.one_in(4)) continue;
      if (world_.files.contains(marker))
        remove(marker);
      else
        put(marker, {.content = {}, .modified = 0, .is_directory = choices_.one_in(4)});
    }
  }

  // Most files are as the collector writes them, some are not.
  void write(const ChangingFile &file) {
    Bytes content = file.content(choices_);
    if (choices_.one_in(10)) content = cut(content, choices_.one_of({static_cast<uint32_t>(content.size()), 8u}));
    if (choices_.one_in(10)) content += choices_.bytes(choices_.below(600));
    if (choices_.one_in(10) && content.size() > 0)
      content.put(choices_.below(static_cast<uint32_t>(content.size())),
                  tests::little_endian().u8(choices_.below(256)));
    // The same second as before is as likely as another, and far away ones are there, too.
    const int64_t modified = choices_.one_in(16)
                                 ? choices_.one_of<int64_t>({0, -1, 0x7FFFFFFF, 0x80000000, 253402300800})
                                 : 1000 + choices_.below(4);
    put(file.path, {.content = content, .modified = modified, .is_directory = false});
  }

  // Shorter by any number of bytes, or by a few, as by a header.
  Bytes cut(const Bytes &content, uint32_t most) {
    const auto size = static_cast<uint32_t>(content.size());
    return content.slice(0, size - choices_.below(std::min(size, most) + 1));
  }

  void put(const std::string &path, const File &file) {
    machine_.files.remove(path);
    world_.files[path] = file;
    if (file.is_directory)
      std::filesystem::create_directories(machine_.files.real(path));
    else
      machine_.files.write(path, file.content, file.modified);
    story_ += "  write " + path + ", time " + std::to_string(file.modified) + ", " +
              (file.is_directory ? "a directory" : summary(file.content)) + "\n";
  }

  void remove(const std::string &path) {
    if (world_.files.erase(path) == 0) return;
    machine_.files.remove(path);
    story_ += "  remove " + path + "\n";
  }

  void change_settings() {
    world_.trace_level = choices_.one_of({3, 2, 9, -1});
    world_.uses_cmclog = choices_.one_in(10);
    world_.has_trace_stream = !choices_.one_in(10);
    machine_.trace_at(world_.trace_level);
    use_cmclog = world_.uses_cmclog ? 1 : 0;
    outfp = world_.has_trace_stream ? trace_stream_ : nullptr;
    story_ += printed("  mc_debug_level %d, use_cmclog %d, %s\n", world_.trace_level, use_cmclog,
                      outfp ? "a trace stream" : "no trace stream");
  }

  void plant_faults() {
    world_.faults.clear();
    // Two at once tell which of two steps comes first. They are never of one function.
    std::set<std::string> failing;
    while (!kind_.faults.empty() && choices_.one_in(4)) {
      Fault fault = kind_.faults[choices_.below(static_cast<uint32_t>(kind_.faults.size()))];
      if (!failing.insert(fault.function).second) break;
      fault.nth = 1 + static_cast<int>(choices_.below(static_cast<uint32_t>(fault.nth)));
      fault.fails_on = choices_.one_in(3);
      world_.faults.push_back(fault);
      story_ += printed("  %s fails %s call %d with %s\n", fault.function.c_str(), fault.fails_on ? "from" : "in",
                        fault.nth, strerror(fault.error));
    }
    machine_.plant(world_.faults);
  }

  Call next_call() {
    CallOptions options = {.growth = {growth(), growth()}, .most = kMostOfAHost};
    const bool needs_room = world_.files.contains(kind_.overrunning);
    if (choices_.one_in(3) && !needs_room) {
      // Often enough it is a byte that decides.
      const bool is_close = needed_before_ > 0 && choices_.one_in(3);
      options.size =
          is_close ? needed_before_ - 1 + choices_.below(3) : choices_.below(choices_.one_of({32u, 2000u, 40000u}));
    }
    options.null_buffer = choices_.one_in(40);
    Call call = {kind_.entry_points[choices_.below(static_cast<uint32_t>(kind_.entry_points.size()))], options};
    std::ostringstream about;
    about << "  call " << call.entry_point << " with " << options.size << " bytes"
          << (options.null_buffer ? ", null" : "") << "; growth:";
    for (const Growth growth : options.growth) PrintTo(growth, &(about << " "));
    story_ += about.str() + "\n";
    return call;
  }

  std::string any_directory() {
    if (choices_.one_in(8)) return "/nowhere";
    return kind_.directories[choices_.below(static_cast<uint32_t>(kind_.directories.size()))];
  }

  Growth growth() {
    if (world_.files.contains(kind_.in_place))
      return choices_.one_of({Growth::kInPlace, Growth::kRefuse, Growth::kGrantLess});
    return choices_.one_of(
        {Growth::kInPlace, Growth::kMove, Growth::kRefuse, Growth::kGrantLess, Growth::kNull, Growth::kSayNothing});
  }

  // ------------------------------------------------------------------------------------- what comes of it

  void compare(const Call &call) {
    const tests::Reply expected = expected_of(call);
    const tests::Reply actual = machine_.call(call.entry_point, call.options);
    const uint32_t needed = actual.requests.empty() ? actual.length : actual.requests.back();
    if (needed < kMostOfAHost) needed_before_ = needed;

    differ("the result", expected.status, actual.status);
    differ("the length", expected.length, actual.length);
    differ("the sizes asked for", expected.requests, actual.requests);
    differ("the buffer", expected.buffer, actual.buffer);
    compare_machines();
  }

  void compare_decoding() {
    const std::string &decoder = kind_.entry_points[0];
    const std::string from = choices_.one_in(8) ? any_directory() : kind_.directories[0];
    const std::string to = choices_.one_in(4) ? any_directory() : kind_.directories[1];
    story_ += "  " + decoder + " from " + from + " to " + to + "\n";

    world_.begin_call();
    const int32_t expected = kind_.decode(world_, decoder, from, to);
    const tests::Printed actual = machine_.decode(decoder, from.c_str(), to.c_str());

    differ("the result", expected, actual.result);
    differ("standard output", world_.printed_out, actual.out);
    differ("standard error", world_.printed_err, actual.err);
    compare_machines();
  }

  void compare_machines() {
    differ("what no call may do", std::string(), machine_.complaints());
    differ("the trace", world_.traced, without_addresses(machine_.trace()));
    differ("the system log", world_.logged, machine_.system_log());
    compare_files();
  }

  tests::Reply expected_of(const Call &call) {
    HostReplyBuffer buffer(call.options.size, call.options.growth, call.options.most);
    tests::Reply reply{.status = 0, .length = tests::kUnwrittenLength, .buffer = {}, .requests = {}};
    world_.host = &buffer;
    world_.begin_call();
    reply.status = model_->call(call.entry_point, call.options.null_buffer ? nullptr : &buffer, &reply.length);
    reply.buffer = Bytes(std::vector<uint8_t>(buffer.bytes(), buffer.bytes() + buffer.size()));
    reply.requests = buffer.requests();
    return reply;
  }

  void compare_files() {
    std::set<std::string> paths;
    const std::string root = machine_.files.real("");
    for (const auto &entry : std::filesystem::recursive_directory_iterator(root))
      if (entry.is_regular_file()) paths.insert(entry.path().string().substr(root.size()));
    for (const auto &[path, file] : world_.files)
      if (!file.is_directory) paths.insert(path);
    for (const std::string &path : paths) {
      const auto file = world_.files.find(path);
      const Bytes content = file == world_.files.end() ? Bytes() : file->second.content;
      differ(path, std::string(content.data(), content.data() + content.size()), machine_.files.read(path));
    }
  }

  template <typename Value>
  void differ(const std::string &what, const Value &expected, const Value &actual) {
    if (expected == actual) return;
    differences_ +=
        what + " should be " + testing::PrintToString(expected) + "\nand is " + testing::PrintToString(actual) + "\n";
  }

  // Of long bytes, what is around the first difference.
  void differ(const std::string &what, const Bytes &expected, const Bytes &actual) {
    if (expected == actual) return;
    size_t first = 0;
    while (first < expected.size() && first < actual.size() && expected[first] == actual[first]) ++first;
    const auto around = [first](const Bytes &bytes) {
      return bytes.slice(std::min(first, bytes.size()),
                         std::min<size_t>(32, bytes.size() - std::min(first, bytes.size())));
    };
    differ(what + "'s size", expected.size(), actual.size());
    differ(what + " from byte " + std::to_string(first), testing::PrintToString(around(expected)),
           testing::PrintToString(around(actual)));
  }

  const Kind &kind_;
  Choices &choices_;
  Machine machine_;
  World world_;
  std::unique_ptr<Model> model_;
  FILE *trace_stream_;
  uint32_t needed_before_ = 0;  // how large the buffer of the call before had to be, as far as one can see
  std::string differences_;
  std::string story_;
};

}  // namespace

void PrintTo(const Kind &kind, std::ostream *out) { *out << kind.name; }

Finding live_through(const Kind &kind, Choices &choices) { return History(kind, choices).live(); }

}  // namespace model
