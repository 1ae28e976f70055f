#include "app/DocumentCommands.h"

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <exception>
#include <filesystem>
#include <system_error>

#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/ProgramsDialog.h"
#include "app/QtHost.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "core/Host.h"
#include "core/TextUtil.h"
#include "editor/DocumentPrograms.h"

namespace zemtra {

namespace {

constexpr const char* kTitle = "Zemtra";
constexpr const char* kStandardTypes = "tap nc cnc ncd dat txt";

bool FileExists(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::is_regular_file(path, error);
}

// "nc .tap *.TXT" gives {"nc", "tap", "txt"}.
QStringList Extensions(const std::string& types) {
  QStringList result;
  for (QString word : QString::fromStdString(types).split(' ', Qt::SkipEmptyParts)) {
    while (word.startsWith('*') || word.startsWith('.')) word.remove(0, 1);
    if (!word.isEmpty()) result << word.toLower();
  }
  return result;
}

// File names are matched regardless of case: each pattern is given in both cases.
QString Patterns(const QStringList& extensions) {
  QStringList patterns;
  for (const QString& extension : extensions) patterns << "*." + extension;
  for (const QString& extension : extensions) {
    if (extension.toUpper() != extension) patterns << "*." + extension.toUpper();
  }
  return patterns.join(' ');
}

QString QtFilters(const QStringList& entries) {
  return entries.join(";;");
}

QString Entry(const QString& description, const QStringList& extensions) {
  return description + " (" + Patterns(extensions) + ")";
}

}  // namespace

FileDialogs DesktopFileDialogs(QWidget* parent) {
  FileDialogs dialogs;
  dialogs.OpenFile = [parent](const QString& title, const QString& folder, const QString& filter) {
    return QFileDialog::getOpenFileName(parent, title, folder, filter, nullptr,
                                        QFileDialog::ReadOnly);
  };
  dialogs.OpenFiles = [parent](const QString& title, const QString& folder, const QString& filter) {
    return QFileDialog::getOpenFileNames(parent, title, folder, filter, nullptr,
                                         QFileDialog::ReadOnly);
  };
  dialogs.SaveFile = [parent](const QString& title, const QString& folder, const QString& filters,
                              QString& chosen) {
    return QFileDialog::getSaveFileName(parent, title, folder, filters, &chosen);
  };
  dialogs.Folder = [parent](const QString& title, const QString& folder) {
    return QFileDialog::getExistingDirectory(parent, title, folder);
  };
  return dialogs;
}

QString OpenFileFilter(const std::string& configuredTypes) {
  const QStringList types = Extensions(configuredTypes);
  const QStringList standard = Extensions(kStandardTypes);
  const QString programs = Entry("CNC Program Files", types.isEmpty() ? standard : types);
  return QtFilters({programs, Entry("DXF Drawing Files", {"dxf"}), "All Files (*)"});
}

QString RichTextFilter() {
  return Entry("Rich Text File", {"rtf"});
}

QString SaveFileFilter(const std::string& configuredTypes) {
  QStringList entries = {Entry("NC Program File", {"nc"}), Entry("NC Tape File", {"tap"}),
                         Entry("Text File", {"txt"})};
  for (const QString& extension : Extensions(configuredTypes)) {
    entries << Entry("CNC Program Files", {extension});
  }
  entries << RichTextFilter() << "All Files (*)";
  return QtFilters(entries);
}

DocumentCommands::DocumentCommands(Plot& plot) : QObject(&plot), plot_(plot) {
  Dialogs = DesktopFileDialogs(&plot);
  plot_.Engine().Editor.Document.AddObserver(this);
}

DocumentCommands::~DocumentCommands() {
  plot_.Engine().Editor.Document.RemoveObserver(this);
}

void DocumentCommands::ModifiedChanged(bool modified) {
  plot_.Panels().Set("edit", modified ? "Modified" : "");
}

bool DocumentCommands::RefuseWhileBusy() const {
  return plot_.Busy;
}

QString DocumentCommands::StartFolder() const {
  return QString::fromStdString(plot_.Settings().General.LastPath);
}

void DocumentCommands::ShowFileMissing(const std::string& path) {
  plot_.GetHost().ask(
      Prompt{"File does not exist:\r\n" + path, kTitle, MsgIcon::Exclamation, MsgButtons::Ok});
}

// Drawings go to the DXF workbench through the drawing door.
bool DocumentCommands::IsDrawing(const std::string& path) {
  if (!EndsWithNoCase(path, "DXF")) return false;
  if (DrawingDoor) {
    DrawingDoor(path);
    return true;
  }
  plot_.GetHost().ask(Prompt{"DXF drawings cannot be opened in this version of Zemtra:\r\n" + path,
                             kTitle, MsgIcon::Exclamation, MsgButtons::Ok});
  return true;
}

void DocumentCommands::Open() {
  if (RefuseWhileBusy() || !PromptSaveChanges()) return;
  const MachineConfig& config = plot_.Engine().Session.ActiveConfig;
  const QString chosen =
      Dialogs.OpenFile("Select NC File", StartFolder(), OpenFileFilter(config.DefaultFileTypes));
  if (chosen.isEmpty()) return;
  const std::string path = chosen.toStdString();
  plot_.Settings().General.LastPath = FolderOf(path);
  if (IsDrawing(path)) return;
  if (!FileExists(path)) {
    plot_.GetHost().ask(
        Prompt{"File does not exist!", kTitle, MsgIcon::Exclamation, MsgButtons::Ok});
    return;
  }
  LoadAndPlot(path);
}

void DocumentCommands::LoadAndPlot(const std::string& path) {
  if (LoadSourceFile(path) && plot_.Settings().Preferences.PlotWhenFileLoaded) {
    plot_.LoadGeometry();
  }
}

bool DocumentCommands::LoadSourceFile(const std::string& path) {
  if (!FileExists(path)) return false;
  Workspace& engine = plot_.Engine();
  ProgramTextView* view = plot_.Editor();
  engine.Editor.ColorizeEnabled = plot_.Settings().General.Colorize;
  engine.Editor.Colorizer = view->Colorizer();
  view->SetColoringActive(false);
  const bool loaded = engine.Editor.LoadSourceFile(path);
  plot_.SetCaption(path);
  if (!loaded) return false;
  view->SetSelection(0, 0);
  plot_.Panels().Set("edit", "");
  AddRecentFile(path);
  plot_.RunHeaderDirectives();
  plot_.StopAutoRefresh();
  plot_.RefreshEditState();
  return true;
}

bool DocumentCommands::Save() {
  if (RefuseWhileBusy()) return false;
  const bool saved = plot_.Engine().Editor.SaveSourceFile([this] { return SaveAs(); });
  if (saved) plot_.Panels().Set("edit", "");
  return saved;
}

bool DocumentCommands::SaveAs() {
  const MachineConfig& config = plot_.Engine().Session.ActiveConfig;
  const std::string current = plot_.Engine().Editor.Document.CurrentFile();
  QString filter;
  QString chosen =
      Dialogs.SaveFile("Save As", current.empty() ? StartFolder() : QString::fromStdString(current),
                       SaveFileFilter(config.DefaultFileTypes), filter);
  if (chosen.isEmpty()) return false;
  const bool rich = filter == RichTextFilter();
  const std::string path = chosen.toStdString();
  if (!plot_.Engine().Editor.SaveFileAs(path, rich ? FileKind::Rich : FileKind::Plain)) {
    return false;
  }
  AddRecentFile(path);
  plot_.Panels().Set("edit", "");
  plot_.SetCaption(path);
  return true;
}

bool DocumentCommands::PromptSaveChanges() {
  return plot_.Engine().Editor.PromptSaveChanges([this] { return SaveAs(); });
}

void DocumentCommands::Close() {
  if (RefuseWhileBusy() || !PromptSaveChanges()) return;
  Workspace& engine = plot_.Engine();
  engine.Editor.CloseDocument();
  plot_.Panels().Set("edit", "");
  plot_.SetCaption("");
  plot_.RunHeaderDirectives();
  if (!engine.View.DXFMode) {  // a drawing on show stays
    engine.Table.Clear();
    engine.View.RefreshGeometry(0);
  }
  plot_.RefreshEditState();
}

void DocumentCommands::InsertFile() {
  if (RefuseWhileBusy()) return;
  const MachineConfig& config = plot_.Engine().Session.ActiveConfig;
  const QStringList chosen =
      Dialogs.OpenFiles("Select NC File", StartFolder(), OpenFileFilter(config.DefaultFileTypes));
  std::vector<std::string> paths;
  for (const QString& path : chosen) paths.push_back(path.toStdString());
  if (!paths.empty()) plot_.Engine().Editor.InsertFiles(paths);
  plot_.Editor()->EnsureCaretVisible();
}

void DocumentCommands::ShowPrograms() {
  const std::string listing = ProgramsListing(plot_.Engine().Editor.Document.Text());
  ProgramsDialog dialog(QString::fromStdString(listing), plot_.Store(), &plot_);
  dialog.exec();
}

void DocumentCommands::SaveSeparate() {
  if (RefuseWhileBusy()) return;
  const QString folder = Dialogs.Folder("Save Programs in Folder", StartFolder());
  if (folder.isEmpty()) return;
  const ProgramDocument& document = plot_.Engine().Editor.Document;
  const int written = SaveSeparatePrograms(document.Text(), folder.toStdString(),
                                           document.Encoding(), plot_.GetHost());
  plot_.Panels().Set("msg", QString("%1 programs saved in %2").arg(written).arg(folder));
}

void DocumentCommands::OpenPassedFile(const std::string& path) {
  try {
    if (!FileExists(path)) {
      ShowFileMissing(path);
      return;
    }
    if (IsDrawing(path) || !PromptSaveChanges()) return;
    LoadAndPlot(path);
  } catch (const std::exception& failure) {
    plot_.GetHost().ask(Prompt{std::string("Error in Zemtra_OpenPassedFile\r\n") + failure.what(),
                               kTitle, MsgIcon::Stop, MsgButtons::Ok});
  }
}

void DocumentCommands::OpenRecent(int index) {
  if (RefuseWhileBusy() || !PromptSaveChanges()) return;
  const std::string path = plot_.Settings().Recent.At(index);
  if (path.empty()) return;
  if (!FileExists(path)) {
    ShowFileMissing(path);
    RemoveRecentFile(path);
    return;
  }
  plot_.Settings().General.LastPath = FolderOf(path);
  if (!IsDrawing(path)) LoadAndPlot(path);
}

void DocumentCommands::AddRecentFile(const std::string& path) {
  if (plot_.Settings().Recent.Add(path)) RebuildRecentMenu();
}

void DocumentCommands::RemoveRecentFile(const std::string& path) {
  if (plot_.Settings().Recent.Remove(path)) RebuildRecentMenu();
}

void DocumentCommands::RebuildRecentMenu() {
  QMenu* menu = plot_.Actions().RecentMenu();
  menu->clear();
  const RecentFiles& recent = plot_.Settings().Recent;
  for (int i = 0; i < RecentFiles::kCount; ++i) {
    const std::string& path = recent.At(i);
    if (path.empty()) continue;
    QAction* item = menu->addAction(QString::fromStdString(path));
    item->setObjectName(QString("RF%1").arg(i));
    connect(item, &QAction::triggered, this, [this, i] { OpenRecent(i); });
  }
  menu->setEnabled(!menu->isEmpty());
}

}  // namespace zemtra
