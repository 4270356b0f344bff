// Runs the fuzz target on every file of the folders that are given: what the fuzzer found once
// stays tested in builds that have no fuzzer.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::uint8_t> read_all(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Whether the target survived the file.
bool replay(const std::filesystem::path& file) {
  const std::vector<std::uint8_t> bytes = read_all(file);
  try {
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return true;
  } catch (const std::exception& error) {
    std::cout << "FAILED " << file.string() << ": " << error.what() << '\n';
    return false;
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t passed = 0;
  std::size_t failed = 0;
  for (const char* folder : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      ++(replay(entry.path()) ? passed : failed);
    }
  }
  std::cout << passed << " passed, " << failed << " failed\n";
  return failed == 0 && passed > 0 ? 0 : 1;
}
