// Replaces the fuzzer: passes each seed of the given folders or files to the target, whole and cut in half. Fails for a
// folder without seeds.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

// In memory of exactly that size, so that a read beyond the end is detected.
void Run(const std::vector<uint8_t>& bytes, size_t size) {
  const std::vector<uint8_t> input(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

void Replay(const std::filesystem::path& path) {
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);  // after a crash the last line names the seed
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
