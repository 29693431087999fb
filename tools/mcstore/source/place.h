// Where the plug-in's files are: on this machine, below a root, or all in one directory.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/redirection.h"
#include "mcstore/json/manifest.h"

namespace mcstore {

class Place : public host::Redirection {
 public:
  // A capture; or else a directory with store files in it, which is taken as /var; or else a root. Empty for this
  // machine's root. Throws Unreadable or Damaged when it is a capture and not as it was taken.
  explicit Place(const std::string &directory);

  // The directory as it was given; "/" for this machine.
  const std::string &directory() const { return directory_; }

  // Where the store files are.
  const std::string &var() const { return var_; }

  // What it says of itself, if it is a capture. The age of what it holds counts from when it was taken.
  const std::optional<Manifest> &captured() const { return captured_; }

  // Where a path of the plug-in leads.
  std::string real(std::string_view path) const;

  // A pipe does not open: it would keep the plug-in waiting without an end.
  std::optional<std::string> resolve(const char *function, const std::string &path) override;

  // What is found elsewhere is no news of this machine, so it goes to standard error, made printable.
  void log(int priority, const std::string &line) override;

 private:
  std::string directory_;
  std::string root_;  // without a slash at its end
  std::optional<Manifest> captured_;
  std::string var_;
};

}  // namespace mcstore
