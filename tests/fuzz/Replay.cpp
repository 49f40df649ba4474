#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

// Runs the target over every file of a folder, each also cut short at every byte: compilers without a fuzzer still
// guard what was once found.
int main(int argc, char **argv) {
  if (argc != 2) return 2;
  int intFiles = 0;
  for (const auto &entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<char> text{std::istreambuf_iterator<char>(file), {}};
    for (std::size_t size = 0; size <= text.size(); ++size)
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(text.data()), size);
    ++intFiles;
  }
  std::printf("%d files\n", intFiles);
  return intFiles == 0;
}
