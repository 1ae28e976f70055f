#include "script/ScriptApi.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <exception>
#include <filesystem>
#include <system_error>

#include "config/ConfigFile.h"
#include "core/AppFolder.h"
#include "core/TextUtil.h"
#include "dxf/DxfWriter.h"
#include "editor/FilterDocument.h"
#include "editor/FormatProgram.h"
#include "editor/LineEnds.h"
#include "editor/RenumberProgram.h"

namespace zemtra {

namespace fs = std::filesystem;

class ScriptApi::Args {
 public:
  explicit Args(std::span<const ScriptValue> values) : values_(values) {}
  const ScriptValue& operator[](std::size_t index) const {
    static const ScriptValue kMissing;
    return index < values_.size() ? values_[index] : kMissing;
  }

 private:
  std::span<const ScriptValue> values_;
};

namespace {

using Handler = ScriptValue (*)(ScriptApi&, const ScriptApi::Args&);

struct FunctionEntry {
  std::string_view name;
  Handler run;
};

// The functions in the order of the script object.
constexpr std::array<FunctionEntry, 45> kFunctions = {{
    {"ZMTSetConfig", [](ScriptApi& s, const ScriptApi::Args& a) { return s.SetConfig(a); }},
    {"ZMTSelectLines", [](ScriptApi& s, const ScriptApi::Args& a) { return s.SelectLines(a); }},
    {"ZMTSelectAll", [](ScriptApi& s, const ScriptApi::Args& a) { return s.SelectAll(a); }},
    {"ZMTSetSelection", [](ScriptApi& s, const ScriptApi::Args& a) { return s.SetSelection(a); }},
    {"ZMTInsertText", [](ScriptApi& s, const ScriptApi::Args& a) { return s.InsertText(a); }},
    {"ZMTInsertLine", [](ScriptApi& s, const ScriptApi::Args& a) { return s.InsertLine(a); }},
    {"ZMTGetNumLines", [](ScriptApi& s, const ScriptApi::Args& a) { return s.GetNumLines(a); }},
    {"ZMTGetLine", [](ScriptApi& s, const ScriptApi::Args& a) { return s.GetLine(a); }},
    {"ZMTGetAll", [](ScriptApi& s, const ScriptApi::Args& a) { return s.GetAll(a); }},
    {"ZMTGetSelected", [](ScriptApi& s, const ScriptApi::Args& a) { return s.GetSelected(a); }},
    {"ZMTGetLineIndex", [](ScriptApi& s, const ScriptApi::Args& a) { return s.GetLineIndex(a); }},
    {"ZMTReplaceAll", [](ScriptApi& s, const ScriptApi::Args& a) { return s.ReplaceAll(a); }},
    {"ZMTFileNew", [](ScriptApi& s, const ScriptApi::Args& a) { return s.FileNew(a); }},
    {"ZMTFileLoad", [](ScriptApi& s, const ScriptApi::Args& a) { return s.FileLoad(a); }},
    {"ZMTPlot", [](ScriptApi& s, const ScriptApi::Args& a) { return s.Plot(a); }},
    {"ZMTFileSave", [](ScriptApi& s, const ScriptApi::Args& a) { return s.FileSave(a); }},
    {"ZMTExportDXF", [](ScriptApi& s, const ScriptApi::Args& a) { return s.ExportDXF(a); }},
    {"ZMTRenumber", [](ScriptApi& s, const ScriptApi::Args& a) { return s.Renumber(a); }},
    {"ZMTColorize", [](ScriptApi& s, const ScriptApi::Args& a) { return s.Colorize(a); }},
    {"ZMTAddSpaces",
     [](ScriptApi& s, const ScriptApi::Args&) { return s.Format(FormatCode::kAddSpaces); }},
    {"ZMTRemoveSpaces",
     [](ScriptApi& s, const ScriptApi::Args&) { return s.Format(FormatCode::kRemoveSpaces); }},
    {"ZMTRemoveTrailingSpaces",
     [](ScriptApi& s,
        const ScriptApi::Args&) { return s.Format(FormatCode::kRemoveTrailingSpaces); }},
    {"ZMTRemoveBlankLines",
     [](ScriptApi& s, const ScriptApi::Args&) { return s.Format(FormatCode::kRemoveBlankLines); }},
    {"ZMTRemoveComments",
     [](ScriptApi& s, const ScriptApi::Args&) { return s.Format(FormatCode::kRemoveComments); }},
    {"ZMTRemoveGarbage", [](ScriptApi& s, const ScriptApi::Args& a) { return s.RemoveGarbage(a); }},
    {"ZMTAllCaps",
     [](ScriptApi& s, const ScriptApi::Args&) { return s.Format(FormatCode::kCaps); }},
    {"ZMTRemoveRedundant",
     [](ScriptApi& s, const ScriptApi::Args&) { return s.Format(FormatCode::kRemoveRedundant); }},
    {"ZMTMirror", [](ScriptApi& s, const ScriptApi::Args& a) { return s.Mirror(a); }},
    {"ZMTRotate", [](ScriptApi& s, const ScriptApi::Args& a) { return s.Rotate(a); }},
    {"ZMTShift", [](ScriptApi& s, const ScriptApi::Args& a) { return s.Shift(a); }},
    {"ZMTScale", [](ScriptApi& s, const ScriptApi::Args& a) { return s.Scale(a); }},
    {"ZMTAddressAdjust", [](ScriptApi& s, const ScriptApi::Args& a) { return s.AddressAdjust(a); }},
    {"ZMTAddressReplace",
     [](ScriptApi& s, const ScriptApi::Args& a) { return s.AddressReplace(a); }},
    {"ZMTAddressRemove", [](ScriptApi& s, const ScriptApi::Args& a) { return s.AddressRemove(a); }},
    {"ZMTAddressSwap", [](ScriptApi& s, const ScriptApi::Args& a) { return s.AddressSwap(a); }},
    {"ZMTConvertArcsToAbsolute",
     [](ScriptApi& s,
        const ScriptApi::Args&) { return s.Translate(TranslateCode::kArcsAbsolute); }},
    {"ZMTConvertArcsToIncremental",
     [](ScriptApi& s,
        const ScriptApi::Args&) { return s.Translate(TranslateCode::kArcsIncremental); }},
    {"ZMTConvertArcsToIJK",
     [](ScriptApi& s, const ScriptApi::Args&) { return s.Translate(TranslateCode::kArcsToIJK); }},
    {"ZMTConvertArcsToR",
     [](ScriptApi& s, const ScriptApi::Args&) { return s.Translate(TranslateCode::kArcsToR); }},
    {"ZMTCustomFilter1",
     [](ScriptApi& s, const ScriptApi::Args&) { return s.Format(FormatCode::kCustomFilter1); }},
    {"ZMTCustomFilter2", [](ScriptApi& s, const ScriptApi::Args& a) { return s.CustomFilter2(a); }},
    {"ZMTBrowseForFile", [](ScriptApi& s, const ScriptApi::Args& a) { return s.BrowseForFile(a); }},
    {"ZMTBrowseForFolder",
     [](ScriptApi& s, const ScriptApi::Args& a) { return s.BrowseForFolder(a); }},
    {"ZMTGetFirstMatchingFile",
     [](ScriptApi& s, const ScriptApi::Args& a) { return s.GetFirstMatchingFile(a); }},
    {"ZMTGetNextMatchingFile",
     [](ScriptApi& s, const ScriptApi::Args& a) { return s.GetNextMatchingFile(a); }},
}};

const FunctionEntry* FindFunction(std::string_view name) {
  const auto found = std::find_if(kFunctions.begin(), kFunctions.end(),
                                  [&](const FunctionEntry& entry) { return entry.name == name; });
  return found == kFunctions.end() ? nullptr : &*found;
}

// Text a script inserts, with its line ends made CR LF as the editor holds them.
std::string EditorText(std::string text) {
  NormalizeLineEnds(text, kCrLf);
  return text;
}

// The first letter of a text, upper-cased ("" for none).
std::string FirstLetterUpper(const ScriptValue& value) {
  const std::string text = ToUpperAscii(value.AsText());
  return text.empty() ? std::string() : text.substr(0, 1);
}

bool IsFile(const fs::path& path) {
  std::error_code error;
  return !path.empty() && fs::is_regular_file(path, error);
}

ScriptValue Nothing() {
  return {};
}

}  // namespace

bool MatchesFilePattern(std::string_view name, std::string_view pattern) {
  // Backtracking over the last "*" keeps this linear in practice.
  std::size_t n = 0, p = 0, starP = std::string_view::npos, starN = 0;
  const auto same = [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
  };
  while (n < name.size()) {
    if (p < pattern.size() && (pattern[p] == '?' || same(pattern[p], name[n]))) {
      ++n;
      ++p;
    } else if (p < pattern.size() && pattern[p] == '*') {
      starP = p++;
      starN = n;
    } else if (starP != std::string_view::npos) {
      p = starP + 1;
      n = ++starN;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

bool ScriptApi::ReadsOnly(std::string_view name) {
  constexpr std::string_view kReaders[] = {"ZMTGetNumLines",  "ZMTGetLine",
                                           "ZMTGetAll",       "ZMTGetSelected",
                                           "ZMTGetLineIndex", "ZMTGetNextMatchingFile"};
  return std::find(std::begin(kReaders), std::end(kReaders), name) != std::end(kReaders);
}

ScriptApi::ScriptApi(ScriptContext& context) : context_(context) {}

std::vector<std::string_view> ScriptApi::FunctionNames() {
  std::vector<std::string_view> names;
  for (const FunctionEntry& entry : kFunctions) names.push_back(entry.name);
  return names;
}

ScriptCallResult ScriptApi::Call(std::string_view name, std::span<const ScriptValue> args) {
  const FunctionEntry* entry = FindFunction(name);
  if (entry == nullptr) return {{}, std::string(name) + " is not a ZMT function"};
  try {
    return {entry->run(*this, Args(args)), {}};
  } catch (const std::exception& failure) {
    return {{}, std::string(name) + ": " + failure.what()};
  }
}

// ---- Configuration -------------------------------------------------------------------------

ScriptValue ScriptApi::SetConfig(const Args& a) {
  const std::string name = a[0].AsText();
  if (name.empty()) return Nothing();
  const fs::path path = FindPathNoCase(context_.ApplicationFolder, "CONFIG/" + name + ".zmt");
  if (!IsFile(path)) return Nothing();
  std::string pathText = path.string();
  MachineConfig& record = context_.Session.EditConfig;
  if (!LoadConfig(pathText, record, context_.host, context_.ApplicationFolder)) return Nothing();
  if (context_.FrontEnd.ApplyConfiguration) {
    context_.FrontEnd.ApplyConfiguration(record);
  } else {
    ApplyConfig(record, context_.Session, context_.host, [](const std::string&) {});
  }
  return Nothing();
}

// ---- Text and selection --------------------------------------------------------------------

ScriptValue ScriptApi::SelectLines(const Args& a) {
  ProgramDocument& document = context_.Editor.Document;
  const int first = std::max(0, a[0].AsInt32());
  const int count = std::max(0, a[1].AsInt32());
  const std::size_t start = document.LineStart(first);
  const std::size_t end =
      first + count >= document.LineCount() ? document.Size() : document.LineStart(first + count);
  document.SetSelection(start, end > start ? end - start : 0);
  return Nothing();
}

ScriptValue ScriptApi::SelectAll(const Args&) {
  ProgramDocument& document = context_.Editor.Document;
  document.SetSelection(0, document.Size());
  return Nothing();
}

ScriptValue ScriptApi::SetSelection(const Args& a) {
  context_.Editor.Document.SetSelection(static_cast<std::size_t>(std::max(0, a[0].AsInt32())),
                                        static_cast<std::size_t>(std::max(0, a[1].AsInt32())));
  return Nothing();
}

ScriptValue ScriptApi::InsertText(const Args& a) {
  context_.Editor.Document.ReplaceSelection(EditorText(a[0].AsText()));
  return Nothing();
}

ScriptValue ScriptApi::InsertLine(const Args& a) {
  context_.Editor.Document.ReplaceSelection(EditorText(a[0].AsText() + "\r\n"));
  return Nothing();
}

ScriptValue ScriptApi::GetNumLines(const Args&) {
  return ScriptValue::Number(context_.Editor.Document.LineCount());
}

ScriptValue ScriptApi::GetLine(const Args& a) {
  return ScriptValue::Text(context_.Editor.Document.GetProgramLine(a[0].AsInt32()));
}

ScriptValue ScriptApi::GetAll(const Args&) {
  return ScriptValue::Text(context_.Editor.Document.Text());
}

ScriptValue ScriptApi::GetSelected(const Args&) {
  return ScriptValue::Text(context_.Editor.Document.SelText());
}

ScriptValue ScriptApi::GetLineIndex(const Args& a) {
  const ProgramDocument& document = context_.Editor.Document;
  const int line = a[0].AsInt32();
  if (line < 0 || line >= document.LineCount()) return ScriptValue::Number(-1);
  return ScriptValue::Number(static_cast<double>(document.LineStart(line)));
}

ScriptValue ScriptApi::ReplaceAll(const Args& a) {
  const std::string find = a[0].AsText();
  if (find.empty()) return Nothing();
  const std::string replacement = EditorText(a[1].AsText());
  ProgramDocument& document = context_.Editor.Document;
  const std::string& text = document.Text();
  std::string result;
  std::size_t from = 0;
  for (std::size_t at = text.find(find); at != std::string::npos; at = text.find(find, from)) {
    result.append(text, from, at - from).append(replacement);
    from = at + find.size();
  }
  if (from == 0) return Nothing();  // no match: the text and its undo history stay as they are
  result.append(text, from, std::string::npos);
  const std::size_t caret = document.SelStart();
  document.ReplaceRange(0, document.Size(), result);
  document.SetSelStart(std::min(caret, document.Size()));
  return Nothing();
}

// ---- File and plot -------------------------------------------------------------------------

ScriptValue ScriptApi::FileNew(const Args&) {
  context_.Editor.CloseDocument();
  context_.host.status("edit", "");
  context_.Table.Clear();
  if (context_.FrontEnd.DocumentCleared) context_.FrontEnd.DocumentCleared();
  if (context_.FrontEnd.GeometryCleared) context_.FrontEnd.GeometryCleared();
  return Nothing();
}

ScriptValue ScriptApi::FileLoad(const Args& a) {
  const std::string path = a[0].AsText();
  if (!IsFile(path)) return Nothing();
  const bool loaded = context_.FrontEnd.LoadFile ? context_.FrontEnd.LoadFile(path)
                                                 : context_.Editor.LoadSourceFile(path);
  if (!loaded) return Nothing();
  context_.Table.Clear();
  if (context_.FrontEnd.GeometryCleared) context_.FrontEnd.GeometryCleared();
  return Nothing();
}

ScriptValue ScriptApi::Plot(const Args&) {
  if (context_.FrontEnd.Plot) context_.FrontEnd.Plot();
  return Nothing();
}

ScriptValue ScriptApi::FileSave(const Args&) {
  const ScriptFrontEnd& front = context_.FrontEnd;
  if (context_.Editor.SaveSourceFile([&front] { return front.SaveAs && front.SaveAs(); })) {
    context_.host.status("edit", "");
  }
  return Nothing();
}

ScriptValue ScriptApi::ExportDXF(const Args& a) {
  const std::string path = a[0].AsText();
  if (path.empty()) return Nothing();
  DxfWriteOptions options;
  options.lathe = context_.Session.ActiveConfig.MachineType == 1;
  const GeometryTable& table = context_.Table;
  const std::string text = ExportGeometryAsDXF(table, 1, std::max(0, table.GeoLast), options);
  std::string error;
  if (!WriteDxfFile(path, text, error)) {
    context_.host.ask(
        Prompt{"Error in ZMTExportDXF\r\n" + error, "Zemtra", MsgIcon::Stop, MsgButtons::Ok});
  }
  return Nothing();
}

ScriptValue ScriptApi::Colorize(const Args&) {
  if (context_.FrontEnd.Colorize) {
    context_.FrontEnd.Colorize();
  } else {
    context_.Editor.ColorizeProgram();
  }
  return Nothing();
}

// ---- Filters -------------------------------------------------------------------------------

ScriptValue ScriptApi::Renumber(const Args& a) {
  const int mode = a[3].AsInt32();
  if (mode < 0 || mode > 3) return Nothing();
  RenumberOptions options;
  options.Start = a[0].AsInt32();
  options.Increment = a[1].AsInt32();
  options.MaxDigits = std::clamp(a[2].AsInt32(), 2, 6);
  options.Mode = mode;
  options.AddSpace = a[4].AsBoolean();
  const MachineConfig& config = context_.Session.ActiveConfig;
  Host& host = context_.host;
  ApplyFilterToDocument(context_.Editor.Document, host, false, false, [&](std::string_view text) {
    return RenumberProgram(text, options, config, host);
  });
  return Nothing();
}

ScriptValue ScriptApi::Format(int code) {
  FilterSession session(context_.Session.ActiveConfig, context_.Filters);
  Host& host = context_.host;
  ApplyFilterToDocument(context_.Editor.Document, host, false, false, [&](std::string_view text) {
    return FormatProgram(code, text, session, host);
  });
  return Nothing();
}

ScriptValue ScriptApi::Translate(int code) {
  FilterSession session(context_.Session.ActiveConfig, context_.Filters);
  Host& host = context_.host;
  ApplyFilterToDocument(context_.Editor.Document, host, false, true, [&](std::string_view text) {
    return TranslateProgram(code, text, session, host);
  });
  return Nothing();
}

ScriptValue ScriptApi::RemoveGarbage(const Args&) {
  Host& host = context_.host;
  ApplyFilterToDocument(context_.Editor.Document, host, false, false,
                        [&](std::string_view text) { return zemtra::RemoveGarbage(text, host); });
  return Nothing();
}

ScriptValue ScriptApi::Mirror(const Args& a) {
  FilterParameters& p = context_.Filters;
  bool any = false;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    p.Mirror[axis] = !a[axis].IsEmpty();
    p.MirrorPoint[axis] = static_cast<float>(a[axis].AsNumber());
    any = any || p.Mirror[axis];
  }
  return any ? Translate(TranslateCode::kMirror) : Nothing();
}

ScriptValue ScriptApi::Rotate(const Args& a) {
  FilterParameters& p = context_.Filters;
  p.RotCenterX = static_cast<float>(a[0].AsNumber());
  p.RotCenterY = static_cast<float>(a[1].AsNumber());
  p.RotAngle = a[2].AsNumber();
  return Translate(TranslateCode::kRotate);
}

ScriptValue ScriptApi::Shift(const Args& a) {
  FilterParameters& p = context_.Filters;
  bool any = false;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    p.Shift[axis] = static_cast<float>(a[axis].AsNumber());
    any = any || p.Shift[axis] != 0;
  }
  return any ? Translate(TranslateCode::kShift) : Nothing();
}

ScriptValue ScriptApi::Scale(const Args& a) {
  FilterParameters& p = context_.Filters;
  p.SclCenterX = static_cast<float>(a[0].AsNumber());
  p.SclCenterY = static_cast<float>(a[1].AsNumber());
  p.SclFactor = a[2].AsNumber();
  p.FeedFactor = 1;
  return Translate(TranslateCode::kScale);
}

ScriptValue ScriptApi::AddressAdjust(const Args& a) {
  FilterParameters& p = context_.Filters;
  p.AdjustAddresses = ToUpperAscii(a[0].AsText());
  p.AdjustOperator = a[1].AsInt32();
  p.AdjustOperand = a[2].AsNumber();
  p.AdjustFormat = a[3].AsText();
  if (p.AdjustOperator == 3 && p.AdjustOperand == 0) {
    context_.host.ask(Prompt{"Address Adjust - Can't divide by zero", "Zemtra",
                             MsgIcon::Exclamation, MsgButtons::Ok});
    return Nothing();
  }
  return Format(FormatCode::kAdjustAddresses);
}

ScriptValue ScriptApi::AddressReplace(const Args& a) {
  FilterParameters& p = context_.Filters;
  p.ReplaceFind = FirstLetterUpper(a[0]);
  p.ReplaceWith = FirstLetterUpper(a[1]);
  return Format(FormatCode::kReplaceAddress);
}

ScriptValue ScriptApi::AddressRemove(const Args& a) {
  context_.Filters.RemoveAddresses = ToUpperAscii(a[0].AsText());
  return Format(FormatCode::kRemoveAddresses);
}

ScriptValue ScriptApi::AddressSwap(const Args& a) {
  FilterParameters& p = context_.Filters;
  p.SwapFirst = FirstLetterUpper(a[0]);
  p.SwapSecond = FirstLetterUpper(a[1]);
  return Format(FormatCode::kSwapAddresses);
}

ScriptValue ScriptApi::CustomFilter2(const Args& a) {
  context_.Filters.Approach = a[0].AsNumber();
  context_.Filters.FeedMult = a[1].AsNumber();
  return Format(FormatCode::kCustomFilter2);
}

// ---- Files ---------------------------------------------------------------------------------

ScriptValue ScriptApi::BrowseForFile(const Args&) {
  return ScriptValue::Text(context_.host.chooseFile("Select File", "", "All Files (*)"));
}

ScriptValue ScriptApi::BrowseForFolder(const Args&) {
  const ScriptFrontEnd& front = context_.FrontEnd;
  return ScriptValue::Text(front.ChooseFolder ? front.ChooseFolder() : std::string());
}

ScriptValue ScriptApi::GetFirstMatchingFile(const Args& a) {
  searchFolder_ = a[0].AsText();
  searchPattern_ = a[1].AsText();
  searchNames_.clear();
  searchNext_ = 0;
  // The folder and the pattern are joined as written; a folder named without its closing
  // separator is taken as the folder itself.
  fs::path folder = searchFolder_.empty() ? fs::path(".") : fs::path(searchFolder_);
  std::string pattern = searchPattern_;
  std::error_code error;
  if (!searchFolder_.empty() && !fs::is_directory(folder, error)) {
    pattern = folder.filename().string() + pattern;
    folder = folder.parent_path().empty() ? fs::path(".") : folder.parent_path();
  }
  if (pattern.empty()) pattern.push_back('*');  // every file
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().string();
    std::error_code kindError;
    if (it->is_regular_file(kindError) && MatchesFilePattern(name, pattern)) {
      searchNames_.push_back(name);
    }
  }
  std::sort(searchNames_.begin(), searchNames_.end());
  return GetNextMatchingFile(a);
}

ScriptValue ScriptApi::GetNextMatchingFile(const Args&) {
  if (searchNext_ >= searchNames_.size()) return ScriptValue::Text("");
  return ScriptValue::Text(searchNames_[searchNext_++]);
}

}  // namespace zemtra
