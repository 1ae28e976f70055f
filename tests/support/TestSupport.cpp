#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace zemtra::test {

namespace {
std::filesystem::path FromEnv(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::filesystem::path(value) : std::filesystem::path();
}
}  // namespace

std::filesystem::path TestDataDir() { return FromEnv("ZEMTRA_TEST_DATA"); }
std::filesystem::path SamplesDir() { return FromEnv("ZEMTRA_SAMPLES"); }
std::filesystem::path SourceDataDir() { return FromEnv("ZEMTRA_SOURCE_DATA"); }

std::string ReadFileBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

}  // namespace zemtra::test
