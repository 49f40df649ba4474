#include <cstdlib>
#include <string>

#include "SetupSamples.h"
#include "settings/SetupFile.h"

/// Writes COUNT random setups into FOLDER.
int main(int argc, char **argv) {
  if (argc != 3) return 2;
  tarvik::test::RandomSetups setups(30);
  for (int i = std::atoi(argv[2]); i > 0; --i)
    tarvik::SaveSetup(setups.Next(), std::string(argv[1]) + "/" + std::to_string(i) + ".json");
  return 0;
}
