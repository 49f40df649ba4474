#include <gtest/gtest.h>

#include "HelperClient.h"

int main(int argc, char **argv) {
  int lngExitStatus = 0;
  if (tarvik::remote::PlayedHelper(argc, argv, lngExitStatus)) return lngExitStatus;
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
