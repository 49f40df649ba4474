#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "MalformedFrames.h"
#include "Seeds.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *pData, std::size_t lngSize);
extern std::size_t g_lngAnswers;

namespace {

namespace fs = std::filesystem;
using namespace tarvik::remote;

/// The answers that the session gave.
std::size_t Try(const std::string &strInput) {
  const std::size_t lngBefore = g_lngAnswers;
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(strInput.data()), strInput.size());
  return g_lngAnswers - lngBefore;
}

std::string TextOf(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteSeeds(const fs::path &folder) {
  for (const auto &[strName, seed] : Seeds()) std::ofstream(folder / strName, std::ios::binary) << seed.strInput;
}

/// Whether the corpus is of the protocol and the contract as they are: bytes of an older one end at its first frame.
bool IsPresent(const fs::path &folder) {
  for (const auto &[strName, seed] : Seeds())
    if (TextOf(folder / strName) != seed.strInput || Try(seed.strInput) != seed.lngAnswers) {
      std::printf("%s is not of this protocol: replay_remote CORPUS --write makes it anew\n", strName.c_str());
      return false;
    }
  return true;
}

/// Each file, also cut short at every byte: compilers without a fuzzer still guard what was once found.
int TryCorpus(const fs::path &folder) {
  int intFiles = 0;
  for (const auto &entry : fs::directory_iterator(folder)) {
    const std::string strInput = TextOf(entry.path());
    for (std::size_t size = 0; size <= strInput.size(); ++size) Try(strInput.substr(0, size));
    ++intFiles;
  }
  return intFiles;
}

}  // namespace

/// Usage: replay_remote CORPUS [--write]: the kept inputs, and as many malformed frames as TARVIK_MALFORMED_FRAMES
/// says; or writes the inputs that follow from the contract.
int main(int argc, char **argv) {
  if (argc == 3 && std::string_view(argv[2]) == "--write") {
    WriteSeeds(argv[1]);
    return EXIT_SUCCESS;
  }
  if (argc != 2 || !IsPresent(argv[1])) return EXIT_FAILURE;
  const std::size_t lngSeedAnswers = g_lngAnswers;
  const int intFiles = TryCorpus(argv[1]);
  const char *strCount = std::getenv("TARVIK_MALFORMED_FRAMES");
  const long lngCount = strCount ? std::atol(strCount) : 100'000;
  MalformedFrames frames(20);
  for (long i = 0; i < lngCount; ++i) Try(InputOf(frames.Next(), false));
  std::printf("%zu inputs of the contract with %zu answers; %d files, %ld frames, %zu answers in all\n", Seeds().size(),
              lngSeedAnswers, intFiles, lngCount, g_lngAnswers);
  return intFiles > 0 && lngCount > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
