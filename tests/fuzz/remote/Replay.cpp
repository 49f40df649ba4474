#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "MalformedFrames.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *pData, std::size_t lngSize);

namespace {

void Try(const std::string &strInput) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(strInput.data()), strInput.size());
}

/// Each file, also cut short at every byte: compilers without a fuzzer still guard what was once found.
int TryCorpus(const char *strFolder) {
  int intFiles = 0;
  for (const auto &entry : std::filesystem::directory_iterator(strFolder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string strInput{std::istreambuf_iterator<char>(file), {}};
    for (std::size_t size = 0; size <= strInput.size(); ++size) Try(strInput.substr(0, size));
    ++intFiles;
  }
  return intFiles;
}

/// The frames of one stream in the form of an input. What does not fit into its lengths is left to the live entry.
std::string InputOf(const std::vector<std::string> &arrFrames) {
  std::string strInput(1, '\0');
  for (const std::string &strFrame : arrFrames) {
    if (strFrame.size() > 0xFFFF) continue;
    strInput += static_cast<char>(strFrame.size() & 0xFF);
    strInput += static_cast<char>(strFrame.size() >> 8);
    strInput += strFrame;
  }
  return strInput;
}

}  // namespace

/// Usage: replay_remote CORPUS: the kept inputs, and as many malformed frames as TARVIK_MALFORMED_FRAMES says.
int main(int argc, char **argv) {
  if (argc != 2) return EXIT_FAILURE;
  const int intFiles = TryCorpus(argv[1]);
  const char *strCount = std::getenv("TARVIK_MALFORMED_FRAMES");
  const long lngCount = strCount ? std::atol(strCount) : 100'000;
  tarvik::remote::MalformedFrames frames(20);
  for (long i = 0; i < lngCount; ++i) Try(InputOf(frames.Next()));
  std::printf("%d files, %ld frames\n", intFiles, lngCount);
  return intFiles > 0 && lngCount > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
