#pragma once
// A script workspace over a scratch application folder (the shipped configurations, a folder
// for files), with a recording host.
#include <filesystem>
#include <memory>
#include <string>

#include "core/RecordingHost.h"
#include "script/ScriptWorkspace.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra::test {

class ScriptBench {
  ScratchFolder folder_;  // first, so that it is removed after the workspace that uses it

 public:
  // `program` becomes the untitled document (line ends made CR LF).
  explicit ScriptBench(const std::string& program = "") {
    std::filesystem::create_directories(folder_ / "SCRIPTS");
    std::filesystem::copy(SourceDataDir() / "CONFIG", folder_ / "CONFIG",
                          std::filesystem::copy_options::recursive);
    work = std::make_unique<ScriptWorkspace>(host, folder_.path());
    work->SetProgramText(program);
  }

  // Runs `source` as a script file would run.
  ScriptOutcome Run(const std::string& source) { return work->Scripts.Execute(source, "test.js"); }
  // Writes `bytes` to `name` under the scratch folder; returns its full path.
  std::string Write(const std::string& name, const std::string& bytes) const {
    return folder_.Write(name, bytes);
  }
  const std::string& Text() const { return work->Editor.Document.Text(); }
  const std::filesystem::path& Folder() const { return folder_.path(); }

  RecordingHost host;
  std::unique_ptr<ScriptWorkspace> work;
};

}  // namespace zemtra::test
