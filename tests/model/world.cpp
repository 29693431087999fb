#include "model/world.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace model {

void World::begin_call() {
  calls_.clear();
  traced.clear();
  logged.clear();
  printed_out.clear();
  printed_err.clear();
}

bool World::works(const std::string &function) {
  const int nth = ++calls_[function];
  for (const Fault &fault : faults)
    if (fault.function == function && (fault.nth == nth || (fault.fails_on && fault.nth < nth))) {
      error_ = fault.error;
      return false;
    }
  return true;
}

std::optional<FileFacts> World::stat(const std::string &path) {
  if (!works("stat")) return {};
  const auto file = files.find(path);
  if (file == files.end()) {
    error_ = ENOENT;
    return {};
  }
  return FileFacts{file->second.content.size(), file->second.modified};
}

std::optional<Stream> World::open(const std::string &path) {
  if (!works("fopen")) return {};
  const auto file = files.find(path);
  if (file == files.end()) {
    error_ = ENOENT;
    return {};
  }
  return Stream{.content = file->second.content};
}

Bytes World::read(Stream &stream, size_t size) {
  const size_t count = std::min(size, stream.content.size() - stream.position);
  if (count > 0 && !works("fread")) return {};
  stream.position += count;
  if (count < size && works("fread")) stream.at_end = true;
  return stream.content.slice(stream.position - count, count);
}

std::optional<Bytes> World::read_whole(Stream &stream, size_t size) {
  if (!works("fread") || stream.content.size() - stream.position < size) return {};
  stream.position += size;
  return stream.content.slice(stream.position - size, size);
}

void World::remove(const std::string &path) {
  if (works("unlink")) files.erase(path);
}

bool World::append(const std::string &path, const std::string &text) {
  if (!works("fopen")) return false;
  if (!files.contains(path.substr(0, path.rfind('/')))) {
    error_ = ENOENT;
    return false;
  }
  files[path].content += tests::little_endian().text(text, text.size());
  works("fclose");
  return true;
}

void World::trace(const std::string &function, int line, const std::string &message) {
  if (uses_cmclog || trace_level <= 2 || !has_trace_stream) return;
  traced += "<" + function + ": " + std::to_string(line) + "> [" + function + "]" + message;
}

void World::log(const std::string &file, int line, const std::string &message) {
  logged.push_back(file + ":" + std::to_string(line) + ":" + message);
}

std::string time_text(int64_t time) {
  const auto seconds = static_cast<time_t>(time);
  const char *text = std::ctime(&seconds);
  return text ? text : "";
}

std::string printed(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  char *text = nullptr;
  const int length = vasprintf(&text, format, arguments);
  va_end(arguments);
  std::string result(text, static_cast<size_t>(length));
  free(text);
  return result;
}

std::string text(const Bytes &bytes) {
  std::string text(bytes.data(), bytes.data() + bytes.size());
  return text.substr(0, text.find('\0'));
}

uint64_t little_endian(const Bytes &bytes, size_t offset, size_t width) {
  uint64_t value = 0;
  for (size_t i = width; i-- > 0;) value = value << 8 | bytes[offset + i];
  return value;
}

}  // namespace model
