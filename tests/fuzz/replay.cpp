// Runs a fuzzing target on files and folders of inputs without a fuzzer, for every compiler.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int Run(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  // In memory of just this size, so that a byte behind it is found.
  std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  input.shrink_to_fit();
  return LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int count, char** names) {
  std::size_t inputs = 0;
  for (int i = 1; i < count; ++i) {
    if (std::filesystem::is_directory(names[i])) {
      for (const auto& entry : std::filesystem::directory_iterator(names[i])) {
        Run(entry.path());
        ++inputs;
      }
    } else {
      Run(names[i]);
      ++inputs;
    }
  }
  std::fprintf(stderr, "%zu inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
