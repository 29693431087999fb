#include "mcstore/command_line.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace tests {

Outcome run(const std::string &command) {
  StoreDirectory scratch;
  scratch.write_text("/stderr", "");
  FILE *pipe = popen(("{ " + command + "; } 2>" + scratch.real("/stderr")).c_str(), "r");

  std::string out;
  std::array<char, 4096> chunk;
  for (size_t count = fread(chunk.data(), 1, chunk.size(), pipe); count > 0;
       count = fread(chunk.data(), 1, chunk.size(), pipe))
    out.append(chunk.data(), count);
  const int status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out, scratch.read("/stderr")};
}

std::string mcstore_command() { return MCSTORE_COMMAND; }

}  // namespace tests
