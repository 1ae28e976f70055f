#pragma once
// The file commands of the main window: open, save, save as, the save prompt, close, insert,
// the programs of a file, recent files and files named from outside. The engine's ProgramEditor
// does the reading and writing; this adds the dialogs, the caption, the panels and the plot.
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

#include "editor/ProgramDocument.h"

namespace zemtra {

class Plot;

// The file dialogs, replaceable (tests answer them without a person).
struct FileDialogs {
  // An existing file; "" when cancelled.
  std::function<QString(const QString& title, const QString& folder, const QString& filter)>
      OpenFile;
  // Several existing files; empty when cancelled.
  std::function<QStringList(const QString& title, const QString& folder, const QString& filter)>
      OpenFiles;
  // A name to save under and the filter chosen; "" when cancelled.
  std::function<QString(const QString& title, const QString& folder, const QString& filters,
                        QString& chosenFilter)>
      SaveFile;
  // A folder; "" when cancelled.
  std::function<QString(const QString& title, const QString& folder)> Folder;
};

// The dialogs of the desktop.
FileDialogs DesktopFileDialogs(QWidget* parent);

// "CNC Program Files (*.tap *.nc ...)" and the rest of the open dialog's filter list, from the
// configuration's extension list (blank separated; "" for the standard list).
QString OpenFileFilter(const std::string& configuredTypes);
// The save dialog's filter list; the rich text entry is RichTextFilter().
QString SaveFileFilter(const std::string& configuredTypes);
QString RichTextFilter();

class DocumentCommands : public QObject, private DocumentObserver {
  Q_OBJECT
 public:
  explicit DocumentCommands(Plot& plot);
  ~DocumentCommands() override;

  FileDialogs Dialogs;
  // Opens a drawing chosen in the Open dialog or named from outside (a name ending in "DXF");
  // without it drawings are refused with a message.
  std::function<void(const std::string& path)> DrawingDoor;

  // mnuLoad: the save prompt, the open dialog, then load (and plot when so set).
  void Open();
  // Reads `path` into the editor: caption, panels, recent files; false when it was not loaded.
  bool LoadSourceFile(const std::string& path);
  // mnuSave: to the file's own name (or as a new one when untitled or read-only).
  bool Save();
  // mnuSaveAs: false when the user cancels.
  bool SaveAs();
  // True means go on: the text was saved, or the user chose not to.
  bool PromptSaveChanges();
  // mnuNew: an empty untitled document and an empty picture.
  void Close();
  void InsertFile();
  void ShowPrograms();
  void SaveSeparate();
  // A file named from outside: checked, prompted, loaded and plotted.
  void OpenPassedFile(const std::string& path);
  // An entry of the recent list ("RF" and its index).
  void OpenRecent(int index);

  void AddRecentFile(const std::string& path);
  void RemoveRecentFile(const std::string& path);
  void RebuildRecentMenu();

 private:
  void ModifiedChanged(bool modified) override;
  void LoadAndPlot(const std::string& path);
  bool RefuseWhileBusy() const;
  void ShowFileMissing(const std::string& path);
  bool IsDrawing(const std::string& path);
  QString StartFolder() const;

  Plot& plot_;
};

}  // namespace zemtra
