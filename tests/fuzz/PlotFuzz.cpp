// A whole plot of arbitrary program text, the way the command line plots a file: block reader,
// evaluator, macro statements, calls and cycles. Inputs of odd length run on the lathe, others
// on the default mill, so both machines see every kind of text.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzSupport.h"
#include "config/ConfigFile.h"
#include "core/GeometryTable.h"
#include "interp/ConfigStatements.h"
#include "interp/Interpreter.h"
#include "interp/PlotDriver.h"
#include "macro/Evaluator.h"
#include "macro/ProgramText.h"
#include "macro/VariableStore.h"

namespace zemtra::fuzz {
namespace {

// A loop that never ends is stopped by the block limit or, failing that, by the host's
// abort; both are limits the real program has. The block limit is low so that a looping
// input costs a millisecond, not the whole time limit: a thousand blocks run every loop
// body, call and cycle far past its first pass.
constexpr std::int64_t kBlockLimit = 1000;
constexpr std::chrono::milliseconds kTimeLimit{300};

struct Machines {
  MachineConfig mill = ShippedConfig("default");
  MachineConfig lathe = ShippedConfig("Lathe");
};

const Machines& LoadedMachines() {
  static const Machines machines;
  return machines;
}

struct PlotRun {
  explicit PlotRun(const MachineConfig& machine)
      : variables(ClearedVariables()),
        host(kTimeLimit),
        evaluator(variables),
        interpreter(session.ActiveConfig, variables, evaluator, host),
        driver(interpreter, table, host) {
    session.EditConfig = machine;
    ApplyConfig(session.EditConfig, session, host, ConfigStatementRunner(evaluator, variables));
    for (int n = 5001; n <= 5060; ++n) variables.WriteNumber(n, 0);
    interpreter.SetMachineFolder(DataFolder().string());
    driver.BlockLimit = kBlockLimit;
    driver.ProgressInterval = std::chrono::milliseconds(20);
  }

  ConfigSession session;
  VariableStore& variables;
  DeadlineHost host;
  Evaluator evaluator;
  Interpreter interpreter;
  GeometryTable table;
  PlotDriver driver;
};

}  // namespace
}  // namespace zemtra::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  zemtra::fuzz::LoadedMachines();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zemtra;
  const fuzz::Machines& machines = fuzz::LoadedMachines();
  fuzz::PlotRun run(size % 2 == 1 ? machines.lathe : machines.mill);
  const ProgramText program(std::string(fuzz::AsText(data, size)), "fuzz.nc");
  run.driver.RefreshGeometry(program);
  return 0;
}
