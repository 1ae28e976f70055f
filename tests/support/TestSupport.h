#pragma once
// Helpers shared by the test suites: where the fixtures and the public samples are.
#include <filesystem>
#include <string>

namespace zemtra::test {

// tests/data of the source tree.
std::filesystem::path TestDataDir();
// ../shared/samples beside the clone; may not exist (a clone on its own).
std::filesystem::path SamplesDir();
// data/ of the source tree (what gets installed).
std::filesystem::path SourceDataDir();
// Whole file as bytes; "" when it cannot be read.
std::string ReadFileBytes(const std::filesystem::path& path);

}  // namespace zemtra::test

// Skips the current test, saying so, when the shared samples are not beside the clone.
#define ZEMTRA_REQUIRE_SAMPLES()                                                      \
  do {                                                                                \
    if (!std::filesystem::is_directory(::zemtra::test::SamplesDir()))                 \
      GTEST_SKIP() << "samples folder " << ::zemtra::test::SamplesDir() << " absent"; \
  } while (0)
