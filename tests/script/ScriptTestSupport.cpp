#include "script/ScriptTestSupport.h"

#include <unistd.h>
#include <cstdint>
#include <fstream>

#include "support/TestSupport.h"

namespace zemtra::test {

namespace fs = std::filesystem;

ScriptBench::ScriptBench(const std::string& program) {
  // The process and this object name the folder: tests running side by side never share one.
  folder_ = fs::temp_directory_path() / ("zemtra-script-test-" + std::to_string(::getpid()) + "-" +
                                         std::to_string(reinterpret_cast<std::uintptr_t>(this)));
  fs::remove_all(folder_);
  fs::create_directories(folder_ / "SCRIPTS");
  fs::copy(SourceDataDir() / "CONFIG", folder_ / "CONFIG", fs::copy_options::recursive);
  work = std::make_unique<ScriptWorkspace>(host, folder_);
  work->SetProgramText(program);
}

ScriptBench::~ScriptBench() {
  work.reset();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

ScriptOutcome ScriptBench::Run(const std::string& source) {
  return work->Scripts.Execute(source, "test.js");
}

std::string ScriptBench::Write(const std::string& name, const std::string& bytes) const {
  const fs::path path = folder_ / name;
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
  return path.string();
}

}  // namespace zemtra::test
