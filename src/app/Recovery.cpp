#include "app/Recovery.h"

#include <QDateTime>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/Plot.h"
#include "app/ProgramTextView.h"
#include "app/QtHost.h"
#include "app/Workspace.h"
#include "core/AppFolder.h"
#include "core/Host.h"
#include "core/Version.h"
#include "editor/RecoveryFile.h"

namespace zemtra {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds kDefaultInterval{30000};
constexpr std::chrono::milliseconds kOfferDelay{200};

std::int64_t SecondsNow() {
  return QDateTime::currentSecsSinceEpoch();
}

std::string OfferText(const RecoveryRecord& record) {
  const QString time =
      QDateTime::fromSecsSinceEpoch(record.SavedAt).toString("yyyy-MM-dd HH:mm:ss");
  return "Recover unsaved changes to " + RecoveryDocumentName(record) + " from " +
         time.toStdString() + "?";
}

}  // namespace

Recovery::Recovery(Plot& plot)
    : QObject(&plot),
      plot_(plot),
      writer_(std::make_unique<RecoveryWriter>(FolderFor(plot.Environment().ApplicationFolder))) {
  setObjectName("Recovery");
  plot_.Engine().Editor.Document.AddObserver(this);
  timer_ = new QTimer(this);
  timer_->setObjectName("timRecovery");
  timer_->setInterval(Interval());
  connect(timer_, &QTimer::timeout, this, [this] { SaveNow(); });
  timer_->start();
  connect(&plot_, &Plot::plotting, this, [this] { SaveNow(); });
  // Offered once the window stands and has drawn, after the file of the command line is in.
  connect(&plot_, &Plot::startUpFinished, this,
          [this] { QTimer::singleShot(kOfferDelay, this, &Recovery::OfferRecoveries); });
}

// Reaching here is a normal exit: the work was saved or given up on purpose. The window has
// already let its engine (and with it the document observed) go.
Recovery::~Recovery() {
  writer_->Remove();
}

fs::path Recovery::FolderFor(const fs::path& applicationFolder) {
  if (const char* folder = std::getenv("ZEMTRA_RECOVERY_DIR"); folder && *folder) return folder;
  const char* home = std::getenv("ZEMTRA_HOME");
  const bool usersOwn = (home == nullptr || *home == '\0') && !applicationFolder.empty() &&
                        ApplicationFolderPath() == applicationFolder;
  if (usersOwn) return DefaultRecoveryFolder();
  return applicationFolder / ".recovery";
}

std::chrono::milliseconds Recovery::Interval() {
  bool ok = false;
  const int interval = qEnvironmentVariableIntValue("ZEMTRA_RECOVERY_INTERVAL_MS", &ok);
  return ok && interval > 0 ? std::chrono::milliseconds(interval) : kDefaultInterval;
}

fs::path Recovery::File() const {
  return writer_->File();
}

bool Recovery::SaveNow() {
  const ProgramDocument& document = plot_.Engine().Editor.Document;
  if (!document.DocumentModified() || (!pending_ && writer_->HasFile())) return false;
  RecoveryRecord record;
  record.DocumentPath = document.CurrentFile();
  record.SavedAt = SecondsNow();
  record.Encoding = document.Encoding();
  record.FileLineEnd = document.FileLineEnd();
  record.Text = document.Text();
  FileError error;
  // A failed write is tried again at the next tick; the user is not interrupted for it.
  if (!writer_->Write(record, error)) return false;
  pending_ = false;
  return true;
}

void Recovery::TextReplaced(std::size_t, std::size_t, std::string_view) {
  pending_ = true;
}

void Recovery::ModifiedChanged(bool modified) {
  if (!modified) writer_->Remove();
}

void Recovery::OfferRecoveries() {
  std::vector<OrphanedRecovery> orphans =
      FindOrphanedRecoveries(FolderFor(plot_.Environment().ApplicationFolder));
  // One document at a time: after a restore the others wait for the next start.
  for (OrphanedRecovery& orphan : orphans) {
    if (Offer(orphan)) break;
  }
}

// Asks about one recovery file. Yes restores it; No deletes it. True after a restore.
bool Recovery::Offer(OrphanedRecovery& orphan) {
  const Prompt question{OfferText(orphan.Record()), kProductName, MsgIcon::Question,
                        MsgButtons::YesNo};
  if (plot_.GetHost().ask(question) != MsgAnswer::Yes) {
    orphan.Discard();
    return false;
  }
  if (plot_.Engine().Editor.Document.DocumentModified() && !plot_.PromptSaveChanges()) {
    return true;  // the user keeps the text on show; the file stays for a later start
  }
  Restore(orphan);
  SaveNow();  // the text is this instance's to keep safe now
  orphan.Discard();
  return true;
}

// The recovered text becomes the document: its file's name, unsaved and modified.
void Recovery::Restore(const OrphanedRecovery& orphan) {
  const RecoveryRecord& record = orphan.Record();
  ProgramEditor& editor = plot_.Engine().Editor;
  editor.Undo.SetTracking(false);
  editor.Document.SetText(record.Text);
  editor.Document.SetCurrentFile(record.DocumentPath);
  editor.Document.SetEncoding(record.Encoding);
  editor.Document.SetFileLineEnd(record.FileLineEnd);
  editor.ResetUndo();
  editor.Undo.SetTracking(true);
  editor.Document.SetDocumentModified(true);
  pending_ = true;
  plot_.SetCaption(record.DocumentPath);
  plot_.ColorizeProgram();
  plot_.RefreshEditState();
  plot_.LoadGeometry();
}

}  // namespace zemtra
