#include "mcstore/decode/discarded.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace mcstore {

Discarded::Discarded(FILE *stream) : stream_(stream), real_(dup(fileno(stream))) {
  fflush(stream_);
  const int nowhere = real_ == -1 ? -1 : open("/dev/null", O_WRONLY | O_CLOEXEC);
  const bool is_led_there = nowhere != -1 && dup2(nowhere, fileno(stream_)) != -1;
  const int error = errno;
  if (nowhere != -1) close(nowhere);
  if (is_led_there) return;

  if (real_ != -1) close(real_);
  throw std::system_error(error, std::generic_category(), "cannot discard what is printed");
}

Discarded::~Discarded() {
  fflush(stream_);
  dup2(real_, fileno(stream_));
  close(real_);
}

}  // namespace mcstore
