// The base of the plug-in's tests: each starts with a host of its own.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "host/watched_host.h"

namespace tests {

class PluginTest : public testing::Test, protected WatchedHost {
 protected:
  ~PluginTest() override { unload(); }

 private:
  void complain(const std::string &what) override { ADD_FAILURE() << what; }
};

}  // namespace tests
