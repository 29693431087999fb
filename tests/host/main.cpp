#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char **argv) {
  testing::InitGoogleTest(&argc, argv);
  setenv("TZ", "UTC0", 1);  // before a time is shown
  return RUN_ALL_TESTS();
}
