#pragma once
// Pieces shared by the fuzz targets: a host that answers like the command line and gives up
// after a time limit, and the machine configurations read once at start-up.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "config/MachineConfig.h"
#include "core/Host.h"
#include "macro/VariableStore.h"

namespace zemtra::fuzz {

// Answers every prompt with the default answer and asks long loops to stop once `limit` has
// passed since it was made, as Escape does in the window.
class DeadlineHost : public Host {
 public:
  explicit DeadlineHost(std::chrono::milliseconds limit)
      : deadline_(std::chrono::steady_clock::now() + limit) {}
  MsgAnswer ask(const Prompt& prompt) override { return DefaultAnswer(prompt.buttons); }
  bool abortRequested() const override { return std::chrono::steady_clock::now() > deadline_; }

 private:
  std::chrono::steady_clock::time_point deadline_;
};

// The shipped data folder (CONFIG with its cycle macros): $ZEMTRA_SOURCE_DATA, else the one
// of the source tree this target was built from.
std::filesystem::path DataFolder();

// A shipped machine configuration ("default", "Lathe"), read as the program reads it.
MachineConfig ShippedConfig(const std::string& name);

// One variable table for every run of a target, emptied as at program start each time it is
// asked for: making its thousands of values anew costs more than a short input's run.
VariableStore& ClearedVariables();

// The input as text.
inline std::string_view AsText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace zemtra::fuzz
