#include "editor/ProgramEditor.h"

#include <system_error>
#include <utility>

#include "core/Host.h"
#include "core/NumberText.h"
#include "editor/HeaderDirectives.h"
#include "editor/LineEnds.h"

namespace zemtra {

namespace {

constexpr std::string_view kTitle = "Zemtra";
constexpr std::string_view kReadOnlyText =
    "Loaded file is read only!\r\n\r\nPlease save the file under a new name.";
constexpr std::string_view kAccessFailureText =
    "The file could not be saved!\r\n\r\nMake sure the file isn't in use by another "
    "program,\r\nor save it under a different name.";

Prompt Message(std::string text, MsgIcon icon, MsgButtons buttons = MsgButtons::Ok) {
  return {std::move(text), std::string(kTitle), icon, buttons};
}

bool IsFile(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::is_regular_file(path, error);
}

}  // namespace

ProgramEditor::ProgramEditor(Host& host) : host_(host) {
  Undo.Attach(Document);
}

bool ProgramEditor::LoadSourceFile(const std::string& path) {
  if (!IsFile(path)) return false;
  Document.SetCurrentFile(path);
  Undo.SetTracking(false);
  host_.status("msg", "Loading...  " + path);

  ProgramFileText file;
  FileError error;
  if (!ReadProgramFile(path, file, error, [this] { host_.pumpEvents(); })) {
    ShowLoadFailure(error);
    Undo.SetTracking(true);
    host_.status("msg", "");
    return false;
  }
  Document.SetText(std::move(file.text));
  Document.SetEncoding(file.encoding);
  Document.SetFileLineEnd(std::move(file.eol));
  fileKind_ = file.richText ? FileKind::Rich : FileKind::Plain;
  host_.status("line", "1");
  host_.pumpEvents();

  directives_ = ScanHeaderDirectives(Document.Text());
  host_.pumpEvents();
  if (ColorizeEnabled) ColorizeProgram();
  ResetUndo();  // the loaded text is the base, and the document unmodified
  Undo.SetTracking(true);
  host_.status("msg", "");
  host_.pumpEvents();
  return true;
}

void ProgramEditor::ShowLoadFailure(const FileError& error) {
  host_.ask(Message(
      "Error in Plot_LoadSourceFile\r\n" + FormatNumberText(error.code, "") + " - " + error.text,
      MsgIcon::Stop));
}

void ProgramEditor::ColorizeProgram() {
  zemtra::ColorizeProgram(Document, host_, Colorizer);
}

void ProgramEditor::ResetUndo() {
  Undo.Reset();
}

bool ProgramEditor::WriteDocument(const std::string& path, FileKind kind) {
  TextEncoding encoding = Document.Encoding();
  const std::string bytes = kind == FileKind::Rich
                                ? ProgramRtfDocument(Document.Text(), Colors, Font)
                                : EncodeProgramText(Document.Text(), encoding);
  FileError error;
  if (!WriteFileAtomically(path, bytes, error)) {
    if (IsFileAccessError(error)) {
      host_.ask(Message(std::string(kAccessFailureText), MsgIcon::Exclamation));
    } else {
      host_.ask(Message("Error in SaveSourceFile!\r\n" + error.text, MsgIcon::Stop));
    }
    return false;
  }
  if (kind == FileKind::Plain) Document.SetEncoding(encoding);
  Document.SetDocumentModified(false);
  return true;
}

bool ProgramEditor::SaveSourceFile(const SaveAsHandler& saveAs) {
  const std::string path = Document.CurrentFile();
  if (path.empty()) return saveAs && saveAs();
  if (IsReadOnlyFile(path)) {
    const MsgAnswer answer =
        host_.ask(Message(std::string(kReadOnlyText), MsgIcon::Exclamation, MsgButtons::OkCancel));
    return answer == MsgAnswer::Ok && saveAs && saveAs();
  }
  return WriteDocument(path, fileKind_);
}

bool ProgramEditor::SaveFileAs(const std::string& path, FileKind kind) {
  if (!WriteDocument(path, kind)) return false;
  Document.SetCurrentFile(path);
  fileKind_ = kind;
  return true;
}

bool ProgramEditor::PromptSaveChanges(const SaveAsHandler& saveAs) {
  if (!Document.DocumentModified()) return true;
  const std::string& file = Document.CurrentFile();
  const MsgAnswer answer =
      host_.ask(Message("Save Changes to:\r\n" + (file.empty() ? std::string("Untitled") : file),
                        MsgIcon::Exclamation, MsgButtons::YesNoCancel));
  if (answer == MsgAnswer::Cancel) return false;
  if (answer == MsgAnswer::No) return true;
  return SaveSourceFile(saveAs);
}

void ProgramEditor::CloseDocument() {
  Undo.SetTracking(false);
  Document.SetText(std::string());
  Document.SetCurrentFile(std::string());
  Document.SetEncoding(TextEncoding::Utf8);
  Document.SetFileLineEnd(std::string(kCrLf));
  fileKind_ = FileKind::Plain;
  directives_.clear();
  ResetUndo();
  Undo.SetTracking(true);
}

bool ProgramEditor::InsertFiles(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    std::string bytes;
    FileError error;
    if (!ReadFileBytes(path, bytes, error)) {
      host_.ask(Message("Error in Plot_OpenSource!\r\n" + error.text, MsgIcon::Stop));
      return false;
    }
    Document.ReplaceSelection(InsertFileText(bytes));
  }
  return true;
}

}  // namespace zemtra
