#pragma once
// The engine of a quiet plot with the default mill, as the benchmark tools set it up.
#include <cstdio>

#include "config/ConfigFile.h"
#include "config/ConfigText.h"
#include "config/MachineConfig.h"
#include "core/GeometryTable.h"
#include "core/RecordingHost.h"
#include "interp/Interpreter.h"
#include "interp/PlotDriver.h"
#include "macro/Evaluator.h"
#include "macro/ProgramText.h"
#include "macro/VariableStore.h"

namespace zemtra {

inline MachineConfig DefaultMill() {
  MachineConfig config;
  ReadConfigRecord(ConfigText("[MACHINE]\n"), config);
  return config;
}

struct BenchPlot {
  MachineConfig config = DefaultMill();
  RecordingHost host;
  VariableStore variables;
  Evaluator evaluator{variables};
  Interpreter interpreter{config, variables, evaluator, host};
  GeometryTable table;
  PlotDriver driver{interpreter, table, host};

  BenchPlot() { driver.QuietPlot = true; }
};

// Reads the program at `path`; false, with "<tool>: <reason>" on stderr, when it cannot.
inline bool LoadBenchProgram(const char* tool, const char* path, ProgramText& program) {
  std::string error;
  if (ProgramText::LoadFile(path, program, error)) return true;
  std::fprintf(stderr, "%s: %s\n", tool, error.c_str());
  return false;
}

}  // namespace zemtra
