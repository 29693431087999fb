// Where the plug-in's files are: on this machine, below a root, or all in one directory.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/redirection.h"

namespace mcstore {

class Place : public host::Redirection {
 public:
  // A directory with store files in it is taken as /var, any other one as the root; empty for this machine's root.
  explicit Place(const std::string &directory);

  // The directory as it was given; "/" for this machine.
  const std::string &directory() const { return directory_; }

  // Where the store files are.
  const std::string &var() const { return var_; }

  // Where a path of the plug-in leads.
  std::string real(std::string_view path) const;

  std::optional<std::string> resolve(const char *function, const std::string &path) override;

  // What is found elsewhere is no news of this machine, so it goes to standard error, made printable.
  void log(int priority, const std::string &line) override;

 private:
  std::string directory_;
  std::string root_;
  std::string var_;
};

}  // namespace mcstore
