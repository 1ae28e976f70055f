#pragma once
// The script host: runs a JavaScript text to its end with every ZMT function as a global
// function. The script runs on a thread of its own while the calling thread serves its ZMT
// calls (the program's objects are only ever touched there), pumps the Host's events and
// watches for Esc and the time limit, so that a runaway script can always be stopped.
// Needs a QCoreApplication.
#include <chrono>
#include <string>

namespace zemtra {

class Host;
class ScriptApi;

// How a run ended.
struct ScriptOutcome {
  enum class Kind { Done, Failed, StoppedByUser, TimedOut, Refused };
  Kind kind = Kind::Done;
  int line = 0;         // line of the script where it failed or was stopped; 0 when unknown
  std::string message;  // the host's description: "ReferenceError: x is not defined"
  std::string value;    // the script's completion value as text, when it ran to its end
  bool ok() const { return kind == Kind::Done; }
  // The report shown to the user: "Line 3: ReferenceError: x is not defined".
  std::string Report() const;
};

class ScriptHost {
 public:
  // `api` serves the ZMT calls; `host` is pumped and asked for Esc while a script runs.
  ScriptHost(ScriptApi& api, Host& host);
  ScriptHost(const ScriptHost&) = delete;
  ScriptHost& operator=(const ScriptHost&) = delete;

  // Longest time a script may run; zero or less for no limit (the default).
  void SetTimeLimit(std::chrono::milliseconds limit) { timeLimit_ = limit; }
  std::chrono::milliseconds TimeLimit() const { return timeLimit_; }

  // Runs `source` (reports name it `fileName`) in a fresh script engine and returns when it
  // has ended. A run asked for while one is running is refused (a script that loads a file
  // does not run that file's directives).
  ScriptOutcome Execute(const std::string& source, const std::string& fileName);
  bool Running() const { return running_; }

 private:
  ScriptApi& api_;
  Host& host_;
  std::chrono::milliseconds timeLimit_{0};
  bool running_ = false;
};

}  // namespace zemtra
