#include "mcstore/captured.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace mcstore {

Captured::Captured(FILE *stream) : stream_(stream), file_(tmpfile()), real_(dup(fileno(stream))) {
  fflush(stream_);
  if (file_ && real_ != -1 && dup2(fileno(file_), fileno(stream_)) != -1) return;

  const int error = errno;
  if (file_) fclose(file_);
  if (real_ != -1) close(real_);
  throw std::system_error(error, std::generic_category(), "cannot make a temporary file");
}

Captured::~Captured() {
  fflush(stream_);
  dup2(real_, fileno(stream_));
  close(real_);
  fclose(file_);
}

std::string Captured::text() {
  fflush(stream_);
  rewind(file_);
  std::string text;
  std::array<char, 4096> chunk;
  for (size_t count = fread(chunk.data(), 1, chunk.size(), file_); count > 0;
       count = fread(chunk.data(), 1, chunk.size(), file_))
    text.append(chunk.data(), count);
  return text;
}

}  // namespace mcstore
