#pragma once
// A machine, a variable store, an interpreter and a plot driver wired together, with a
// recording host, for the interpreter's tests.
#include <string>
#include <string_view>
#include <vector>

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
#include "support/ShippedConfig.h"
#include "support/TestSupport.h"

namespace zemtra::test {

// The configuration a file with no keys gives: a mill with the default options. Its macro
// files are the shipped ones of data/CONFIG/default.
inline MachineConfig DefaultMill() {
  MachineConfig config;
  ReadConfigRecord(ConfigText(""), config);
  config.ConfigName = "default";
  return config;
}

// A shipped configuration of data/CONFIG, read as the program reads it ("Lathe").
inline MachineConfig ShippedConfig(const std::string& name) {
  return ReadShippedConfig(SourceDataDir(), name);
}

// `text` with "|" as line ends, for programs written on one line.
inline std::string Lines(std::string_view text) {
  std::string result;
  for (char c : text) result += c == '|' ? std::string("\r\n") : std::string(1, c);
  return result;
}

struct PlotFixture {
  explicit PlotFixture(MachineConfig machine = DefaultMill())
      : config(std::move(machine)),
        evaluator(variables),
        interpreter(config, variables, evaluator, host),
        driver(interpreter, table, host) {
    interpreter.SetMachineFolder(SourceDataDir().string());
  }

  // Plots `text` ("|" separates lines) as an untitled program and returns the entity count.
  int Plot(std::string_view text) {
    program = ProgramText(Lines(text), "test.nc");
    driver.RefreshGeometry(program);
    return table.HighestIndex();
  }

  // Starts a run of `text` for block-by-block tests.
  void Start(std::string_view text) {
    program = ProgramText(Lines(text), "test.nc");
    interpreter.SetProgram(program);
    interpreter.InitInterpreter();
  }

  // Runs `text` block by block, up to `maxBlocks` blocks or the first stop, and gives what each
  // ExecuteBlock returned.
  std::vector<int> Execute(std::string_view text, int maxBlocks = 1000) {
    Start(text);
    std::vector<int> results;
    while (static_cast<int>(results.size()) < maxBlocks) {
      results.push_back(interpreter.ExecuteBlock());
      if (results.back() == Interpreter::kStop) break;
    }
    return results;
  }

  // Texts of every message shown, in order.
  std::vector<std::string> MessageTexts() const {
    std::vector<std::string> texts;
    for (const auto& shown : host.shown) texts.push_back(shown.prompt.text);
    return texts;
  }

  MachineConfig config;
  VariableStore variables;
  Evaluator evaluator;
  RecordingHost host;
  GeometryTable table;
  Interpreter interpreter;
  PlotDriver driver;
  ProgramText program;
};

}  // namespace zemtra::test
