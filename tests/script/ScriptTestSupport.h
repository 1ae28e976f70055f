#pragma once
// A script workspace over a scratch application folder (the shipped configurations, a folder
// for files), with a recording host.
#include <filesystem>
#include <memory>
#include <string>

#include "core/RecordingHost.h"
#include "script/ScriptWorkspace.h"

namespace zemtra::test {

class ScriptBench {
 public:
  // `program` becomes the untitled document (line ends made CR LF).
  explicit ScriptBench(const std::string& program = "");
  ~ScriptBench();

  // Runs `source` as a script file would run.
  ScriptOutcome Run(const std::string& source);
  // Writes `bytes` to `name` under the scratch folder; returns its full path.
  std::string Write(const std::string& name, const std::string& bytes) const;
  const std::string& Text() const { return work->Editor.Document.Text(); }
  std::filesystem::path Folder() const { return folder_; }

  RecordingHost host;
  std::unique_ptr<ScriptWorkspace> work;

 private:
  std::filesystem::path folder_;
};

}  // namespace zemtra::test
