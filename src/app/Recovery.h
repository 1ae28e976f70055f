#pragma once
// Crash recovery of unsaved work. While the document has unsaved changes its text is written
// to this instance's recovery file every 30 s and at each plot; a save, closing the document
// and a normal exit remove the file. At start-up, files left by instances that ended without
// exiting normally are offered back: "Recover unsaved changes to NAME from TIME?".
#include <QObject>
#include <chrono>
#include <filesystem>
#include <memory>

#include "editor/ProgramDocument.h"

class QTimer;

namespace zemtra {

class Plot;
class RecoveryWriter;
class OrphanedRecovery;

class Recovery : public QObject, private DocumentObserver {
  Q_OBJECT
 public:
  explicit Recovery(Plot& plot);
  ~Recovery() override;

  // Folder of the recovery files of a window on `applicationFolder`: $ZEMTRA_RECOVERY_DIR when
  // set; the per-user state folder for the user's own application folder; else (a portable or
  // test folder) ".recovery" inside the application folder, so such instances stay apart.
  static std::filesystem::path FolderFor(const std::filesystem::path& applicationFolder);
  // How often unsaved text is written: 30 s, or $ZEMTRA_RECOVERY_INTERVAL_MS (tests).
  static std::chrono::milliseconds Interval();

  // Writes the text now when it has unsaved changes not yet written. False when nothing
  // needed writing or the write failed.
  bool SaveNow();
  // This instance's recovery file (it exists only while there is unsaved text).
  std::filesystem::path File() const;

 private:
  void TextReplaced(std::size_t start, std::size_t removed, std::string_view inserted) override;
  void ModifiedChanged(bool modified) override;
  void OfferRecoveries();
  bool Offer(OrphanedRecovery& orphan);
  void Restore(const OrphanedRecovery& orphan);

  Plot& plot_;
  std::unique_ptr<RecoveryWriter> writer_;
  QTimer* timer_ = nullptr;
  bool pending_ = false;  // the text changed since it was last written
};

}  // namespace zemtra
