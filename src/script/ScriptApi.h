#pragma once
// The ZMT functions a script calls: editing the program text, its file, the plot, the text
// filters and file searches, all on the objects of a ScriptContext. Arguments come untyped and
// are converted here; a missing argument counts as "" (or 0).
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "script/ScriptContext.h"
#include "script/ScriptValue.h"

namespace zemtra {

// The outcome of one call: its value (undefined for none), or the text of a failure that the
// script sees as an exception.
struct ScriptCallResult {
  ScriptValue value;
  std::string error;
};

class ScriptApi {
 public:
  explicit ScriptApi(ScriptContext& context);
  ScriptApi(const ScriptApi&) = delete;
  ScriptApi& operator=(const ScriptApi&) = delete;

  // The names of the functions, in the order of the table ("ZMTSetConfig", ...).
  static std::vector<std::string_view> FunctionNames();
  // Runs function `name` with `args`. An unknown name or a failure of the engine gives an
  // error text; nothing is thrown.
  ScriptCallResult Call(std::string_view name, std::span<const ScriptValue> args);
  // True for the functions that only read (the text, its lines, the file search): they change
  // nothing any window shows, so they may run on the script's thread while the program's
  // thread waits.
  static bool ReadsOnly(std::string_view name);

  ScriptContext& Context() { return context_; }

  // The functions, one member each; `a` holds the arguments (missing ones are undefined).
  class Args;
  ScriptValue SetConfig(const Args& a);
  ScriptValue SelectLines(const Args& a);
  ScriptValue SelectAll(const Args& a);
  ScriptValue SetSelection(const Args& a);
  ScriptValue InsertText(const Args& a);
  ScriptValue InsertLine(const Args& a);
  ScriptValue GetNumLines(const Args& a);
  ScriptValue GetLine(const Args& a);
  ScriptValue GetAll(const Args& a);
  ScriptValue GetSelected(const Args& a);
  ScriptValue GetLineIndex(const Args& a);
  ScriptValue ReplaceAll(const Args& a);
  ScriptValue FileNew(const Args& a);
  ScriptValue FileLoad(const Args& a);
  ScriptValue Plot(const Args& a);
  ScriptValue FileSave(const Args& a);
  ScriptValue ExportDXF(const Args& a);
  ScriptValue Renumber(const Args& a);
  ScriptValue Colorize(const Args& a);
  ScriptValue Format(int code);
  ScriptValue Translate(int code);
  ScriptValue RemoveGarbage(const Args& a);
  ScriptValue Mirror(const Args& a);
  ScriptValue Rotate(const Args& a);
  ScriptValue Shift(const Args& a);
  ScriptValue Scale(const Args& a);
  ScriptValue AddressAdjust(const Args& a);
  ScriptValue AddressReplace(const Args& a);
  ScriptValue AddressRemove(const Args& a);
  ScriptValue AddressSwap(const Args& a);
  ScriptValue CustomFilter2(const Args& a);
  ScriptValue BrowseForFile(const Args& a);
  ScriptValue BrowseForFolder(const Args& a);
  ScriptValue GetFirstMatchingFile(const Args& a);
  ScriptValue GetNextMatchingFile(const Args& a);

 private:
  ScriptContext& context_;
  // The file search in progress: its folder and pattern, and the names still to give.
  std::string searchFolder_;
  std::string searchPattern_;
  std::vector<std::string> searchNames_;
  std::size_t searchNext_ = 0;
};

// True when `name` matches `pattern` without regard to case; "*" stands for any run of
// characters and "?" for one.
bool MatchesFilePattern(std::string_view name, std::string_view pattern);

}  // namespace zemtra
