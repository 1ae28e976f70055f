#pragma once
// The document engine the main window drives: the program document with its undo history and
// search, and the file commands over them (load, save, the save prompt, insert, close). It
// shows its messages through the Host; the window adds the dialogs, menus and panels.
#include <functional>
#include <string>
#include <vector>

#include "editor/Colorize.h"
#include "editor/DocumentFile.h"
#include "editor/ProgramDocument.h"
#include "editor/TextSearch.h"
#include "editor/UndoHistory.h"

namespace zemtra {

class Host;

// How a file is saved: as plain text, or as a rich text document with the colours.
enum class FileKind { Plain, Rich };

class ProgramEditor {
 public:
  explicit ProgramEditor(Host& host);
  ProgramEditor(const ProgramEditor&) = delete;
  ProgramEditor& operator=(const ProgramEditor&) = delete;

  ProgramDocument Document;
  UndoHistory Undo;  // attached to Document
  TextSearch Search;

  bool ColorizeEnabled = true;  // recolour after a load ("Colorize")
  ColorSink Colorizer;          // receives the colour runs; none means runs are not needed
  AddressColors Colors{};       // for rich text saves
  EditorFont Font;              // for rich text saves

  // Shows `path` in the editor: "Loading...  <path>" in panel "msg", the text read without
  // loss with its line ends made CR LF, header directives collected, recoloured when
  // ColorizeEnabled, undo reset, document unmodified. Returns false at once, with nothing
  // changed, when `path` is "" or no file; false after "Error in Plot_LoadSourceFile" when it
  // cannot be read (CurrentFile then names the file that failed).
  bool LoadSourceFile(const std::string& path);
  // Script statements of the header of the last loaded file (ScanHeaderDirectives).
  const std::vector<std::string>& HeaderDirectives() const { return directives_; }

  // Recolours the whole program through Colorizer (see ColorizeProgram).
  void ColorizeProgram();
  // Forgets the undo steps; the document becomes unmodified.
  void ResetUndo();

  // Asks the window for a new name and saves under it (through SaveFileAs); false when the user
  // cancels.
  using SaveAsHandler = std::function<bool()>;

  // Saves the document to CurrentFile as plain text. Untitled: `saveAs`. A read-only file:
  // "Loaded file is read only!..." with OK and Cancel; OK goes to `saveAs`. False when nothing
  // was saved (a failure shows its message; the document stays modified).
  bool SaveSourceFile(const SaveAsHandler& saveAs);
  // Saves under `path` in `kind`; on success `path` becomes CurrentFile.
  bool SaveFileAs(const std::string& path, FileKind kind);
  // When the document is modified asks "Save Changes to:" with Yes, No and Cancel. True means
  // the caller may go on: No, or Yes and the document was saved. Cancel, a cancelled save-as
  // and a failed save give false, so no text is lost.
  bool PromptSaveChanges(const SaveAsHandler& saveAs);

  // Empties the document and makes it untitled (after PromptSaveChanges).
  void CloseDocument();
  // Inserts each file at the selection in turn (InsertFileText). False after "Error in
  // Plot_OpenSource!" for a file that cannot be read.
  bool InsertFiles(const std::vector<std::string>& paths);

  // How SaveSourceFile writes CurrentFile: rich text when it was loaded or saved as such.
  FileKind CurrentFileKind() const { return fileKind_; }

 private:
  bool WriteDocument(const std::string& path, FileKind kind);
  void ShowLoadFailure(const FileError& error);

  Host& host_;
  std::vector<std::string> directives_;
  FileKind fileKind_ = FileKind::Plain;
};

}  // namespace zemtra
