#pragma once
// Unsaved work kept on disk while the program runs, so that a crash or a killed process loses
// at most the last few seconds of editing. Each running instance claims a file of its own in
// the recovery folder, guarded by a lock the system releases when the process dies; a file
// whose lock is free at start-up was left by an instance that did not exit normally.
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "editor/DocumentFile.h"
#include "editor/TextEncoding.h"

namespace zemtra {

// The document as it stood when it was last written for recovery.
struct RecoveryRecord {
  std::string DocumentPath;  // the file the text belongs to; "" for an untitled document
  std::int64_t SavedAt = 0;  // seconds since 1970-01-01 UTC
  TextEncoding Encoding = TextEncoding::Utf8;
  std::string FileLineEnd = "\r\n";
  std::string Text;  // the editor text (UTF-8, CR LF line ends)
};

// The bytes of a recovery file for `record`: a short header, a blank line, then the text.
std::string RecoveryFileText(const RecoveryRecord& record);
// Reads the bytes of a recovery file. False when they are not one (or are damaged).
bool ParseRecoveryFile(std::string_view bytes, RecoveryRecord& record);

// $XDG_STATE_HOME/zemtra/recovery, else ~/.local/state/zemtra/recovery; "" when neither
// variable is set.
std::filesystem::path DefaultRecoveryFolder();

// The recovery file of this running instance. It claims its file on the first write (creating
// the folder), replaces it atomically on each write, and gives the claim up when destroyed.
class RecoveryWriter {
 public:
  // `instanceId` names the file; it must be unique among running instances ("" makes one
  // from the process id and the time).
  explicit RecoveryWriter(std::filesystem::path folder, std::string instanceId = {});
  ~RecoveryWriter();
  RecoveryWriter(const RecoveryWriter&) = delete;
  RecoveryWriter& operator=(const RecoveryWriter&) = delete;

  // Writes `record` as this instance's recovery file. False, with `error`, when the folder or
  // the file cannot be written; an earlier file then stands.
  bool Write(const RecoveryRecord& record, FileError& error);
  // Deletes the recovery file (after a save, a close or a normal exit); the claim stays.
  void Remove();
  // True while a recovery file of this instance exists.
  bool HasFile() const { return written_; }
  const std::filesystem::path& File() const { return file_; }

 private:
  bool Claim(FileError& error);

  std::filesystem::path folder_;
  std::filesystem::path file_;
  std::filesystem::path lockFile_;
  int lock_ = -1;  // descriptor holding the lock of the claim; -1 before the first write
  bool written_ = false;
};

// A recovery file left behind by an instance that is no longer running. While this object
// lives this instance holds the file's lock, so no other starting instance offers it too.
class OrphanedRecovery {
 public:
  OrphanedRecovery(std::filesystem::path file, std::filesystem::path lockFile, int lock,
                   RecoveryRecord record);
  OrphanedRecovery(OrphanedRecovery&& other) noexcept;
  OrphanedRecovery& operator=(OrphanedRecovery&& other) noexcept;
  OrphanedRecovery(const OrphanedRecovery&) = delete;
  OrphanedRecovery& operator=(const OrphanedRecovery&) = delete;
  ~OrphanedRecovery();

  const RecoveryRecord& Record() const { return record_; }
  const std::filesystem::path& File() const { return file_; }
  // Deletes the file and its lock (the text was restored or declined).
  void Discard();

 private:
  void Release();

  std::filesystem::path file_;
  std::filesystem::path lockFile_;
  int lock_ = -1;
  RecoveryRecord record_;
};

// The recovery files in `folder` whose instances have ended, newest first. Files of running
// instances and files that are not recovery files are left alone; stale locks are cleared.
std::vector<OrphanedRecovery> FindOrphanedRecoveries(const std::filesystem::path& folder);

// The name a recovery is offered under: the document's file name, or "Untitled".
std::string RecoveryDocumentName(const RecoveryRecord& record);

}  // namespace zemtra
