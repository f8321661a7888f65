// Stands in for the fuzzer: gives the target every seed of the folders or files named, whole and cut in half. A folder
// without a seed is a failure.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

// In memory of just that size, so that a read beyond the end is seen.
void Run(const std::vector<uint8_t>& bytes, size_t size) {
  const std::vector<uint8_t> input(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

void Replay(const std::filesystem::path& path) {
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);  // the last line names the seed that ended the program
  std::ifstream file(path, std::ios::binary);
  const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
  Run(bytes, bytes.size());
  Run(bytes, bytes.size() / 2);
}

}  // namespace

int main(int argc, char** argv) {
  size_t seeds = 0;
  for (int i = 1; i < argc; ++i) {
    if (std::filesystem::is_regular_file(argv[i])) {
      Replay(argv[i]);
      ++seeds;
      continue;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
      if (!entry.is_regular_file()) continue;
      Replay(entry.path());
      ++seeds;
    }
  }
  std::printf("%zu seeds\n", seeds);
  return seeds > 0 ? 0 : 1;
}
