#pragma once
// What a script works on: the engine objects of the program being edited and the few things
// only the front end (the window, or the command line) can do. The window and the command
// line each fill one; the ZMT functions reach everything through it.
#include <filesystem>
#include <functional>
#include <string>

#include "config/MachineConfig.h"
#include "core/GeometryTable.h"
#include "core/Host.h"
#include "editor/FilterSession.h"
#include "editor/ProgramEditor.h"

namespace zemtra {

// The front end's part of the ZMT functions. Each may be left empty; the function then does
// the engine's part only (noted per member).
struct ScriptFrontEnd {
  // Makes `record` the configuration in force and shows its machine type's views.
  // Empty: the record is copied into the session's active configuration.
  std::function<void(const MachineConfig& record)> ApplyConfiguration;
  // Loads a program file as opening it from the File menu does (caption, recent files); false
  // when it was not loaded. Empty: the editor loads it.
  std::function<bool(const std::string& path)> LoadFile;
  // Plots the program into the geometry table. Empty: nothing is plotted.
  std::function<void()> Plot;
  // The document was emptied and made untitled: caption and panels follow.
  std::function<void()> DocumentCleared;
  // The geometry table was emptied: the picture follows.
  std::function<void()> GeometryCleared;
  // Saves an untitled document under a name the user picks; false when cancelled.
  // Empty: an untitled document is not saved.
  std::function<bool()> SaveAs;
  // Lets the user pick a folder; "" when cancelled. Empty: "".
  std::function<std::string()> ChooseFolder;
  // Recolours the program. Empty: the editor recolours through its own colour sink.
  std::function<void()> Colorize;
};

struct ScriptContext {
  ProgramEditor& Editor;
  ConfigSession& Session;
  GeometryTable& Table;
  Host& host;
  std::filesystem::path ApplicationFolder;  // holds CONFIG and SCRIPTS
  FilterParameters& Filters;                // parameters of the filters; scripts set them
  ScriptFrontEnd FrontEnd;
};

}  // namespace zemtra
