// Runs a fuzz target's entry point once over every file of the folders (or files) it is
// given, so that the inputs kept from fuzzing replay in the ordinary test builds, which have
// no fuzzing engine. Exit 0 when every input ran, 2 on bad usage.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> InputsOf(const fs::path& argument) {
  std::vector<fs::path> inputs;
  if (fs::is_directory(argument)) {
    for (const auto& entry : fs::recursive_directory_iterator(argument)) {
      if (entry.is_regular_file()) inputs.push_back(entry.path());
    }
    std::sort(inputs.begin(), inputs.end());
  } else if (fs::is_regular_file(argument)) {
    inputs.push_back(argument);
  }
  return inputs;
}

void Replay(const fs::path& input) {
  std::ifstream file(input, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  std::cout << "replay " << input.string() << " (" << bytes.size() << " bytes)" << std::endl;
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: " << argv[0] << " FOLDER|FILE...\n";
    return 2;
  }
  if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const fs::path& input : InputsOf(argv[i])) {
      Replay(input);
      ++count;
    }
  }
  std::cout << count << " inputs replayed" << std::endl;
  return 0;
}
