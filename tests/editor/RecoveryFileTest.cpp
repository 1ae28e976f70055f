#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "editor/RecoveryFile.h"
#include "support/ScratchFolder.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

RecoveryRecord SampleRecord(std::string path, std::int64_t savedAt, std::string text) {
  RecoveryRecord record;
  record.DocumentPath = std::move(path);
  record.SavedAt = savedAt;
  record.Text = std::move(text);
  return record;
}

bool SameRecord(const RecoveryRecord& a, const RecoveryRecord& b) {
  return a.DocumentPath == b.DocumentPath && a.SavedAt == b.SavedAt && a.Encoding == b.Encoding &&
         a.FileLineEnd == b.FileLineEnd && a.Text == b.Text;
}

std::vector<fs::path> FilesIn(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder)) files.push_back(entry.path());
  return files;
}

// Whatever the document held comes back byte for byte: odd paths, header-like text, bytes of
// every value, each encoding and line end.
TEST(RecoveryFile, RecordsReadBackUnchanged) {
  std::string everyByte;
  for (int c = 0; c < 256; ++c) everyByte += static_cast<char>(c);
  RecoveryRecord latin = SampleRecord("/tmp/a%20b\nc\r.nc", 1700000000, everyByte);
  latin.Encoding = TextEncoding::Latin1;
  latin.FileLineEnd = "\n";
  RecoveryRecord mac = SampleRecord("", 0, "file=x\nsaved=1\n\n");
  mac.FileLineEnd = "\r";
  const RecoveryRecord cases[] = {latin, mac, SampleRecord("/p/O1000.nc", 5, ""),
                                  SampleRecord("/p/%", -1, "G1 X1\r\n")};
  for (const RecoveryRecord& record : cases) {
    RecoveryRecord read;
    ASSERT_TRUE(ParseRecoveryFile(RecoveryFileText(record), read)) << record.DocumentPath;
    EXPECT_TRUE(SameRecord(record, read)) << record.DocumentPath;
  }
}

// A file cut short, padded, or not written by us is not taken for a recovery.
TEST(RecoveryFile, DamagedOrForeignFilesAreRefused) {
  const std::string good = RecoveryFileText(SampleRecord("/p/a.nc", 7, "G0 X1\r\nG1 Y2\r\n"));
  const std::string damaged[] = {
      good.substr(0, good.size() - 1),
      good + "X",
      good.substr(0, good.find("saved")),
      "ZEMTRA RECOVERY 2" + good.substr(good.find('\n')),
      "G0 X1\r\nM30\r\n",
      "",
  };
  for (const std::string& bytes : damaged) {
    RecoveryRecord read;
    EXPECT_FALSE(ParseRecoveryFile(bytes, read)) << bytes;
  }
}

TEST(RecoveryFile, NameIsTheFileNameOrUntitled) {
  EXPECT_EQ(RecoveryDocumentName(SampleRecord("/work/parts/O1000.nc", 0, "")), "O1000.nc");
  EXPECT_EQ(RecoveryDocumentName(SampleRecord("", 0, "")), "Untitled");
}

class RecoveryFolderTest : public ::testing::Test {
 protected:
  test::ScratchFolder scratch;
  fs::path folder = scratch / "state" / "recovery";  // made by the first write
};

// A running instance's file is never offered; once the instance is gone without removing it,
// the file is offered once with what was last written, and discarding it leaves nothing.
TEST_F(RecoveryFolderTest, FileOfAnEndedInstanceIsOfferedWithItsLastText) {
  {
    RecoveryWriter writer(folder, "one");
    FileError error;
    ASSERT_TRUE(writer.Write(SampleRecord("/p/a.nc", 10, "first"), error)) << error.text;
    ASSERT_TRUE(writer.Write(SampleRecord("/p/a.nc", 20, "second"), error)) << error.text;
    EXPECT_TRUE(FindOrphanedRecoveries(folder).empty());
  }
  std::vector<OrphanedRecovery> found = FindOrphanedRecoveries(folder);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].Record().Text, "second");
  EXPECT_EQ(found[0].Record().SavedAt, 20);
  // Claimed: another start looking meanwhile does not offer it too.
  EXPECT_TRUE(FindOrphanedRecoveries(folder).empty());
  found[0].Discard();
  EXPECT_TRUE(FilesIn(folder).empty());
  EXPECT_TRUE(FindOrphanedRecoveries(folder).empty());
}

// Remove (a save, a close, a normal exit) leaves nothing behind to offer; a writer that never
// wrote leaves no folder.
TEST_F(RecoveryFolderTest, RemovedOrUnwrittenFilesLeaveNothing) {
  { RecoveryWriter unused(folder, "idle"); }
  EXPECT_FALSE(fs::exists(folder));
  {
    RecoveryWriter writer(folder, "one");
    FileError error;
    ASSERT_TRUE(writer.Write(SampleRecord("", 1, "text"), error));
    EXPECT_TRUE(writer.HasFile());
    writer.Remove();
    EXPECT_FALSE(fs::exists(writer.File()));
  }
  EXPECT_TRUE(FindOrphanedRecoveries(folder).empty());
  EXPECT_TRUE(FilesIn(folder).empty());
}

// Several instances write side by side; the ended ones are offered newest first, a declined
// one (released without Discard) stays for the next start, and stray files are ignored.
TEST_F(RecoveryFolderTest, SeveralInstancesKeepTheirOwnFiles) {
  FileError error;
  RecoveryWriter running(folder, "running");
  ASSERT_TRUE(running.Write(SampleRecord("", 99, "live"), error));
  for (const auto& [id, time] : {std::pair{"old", 100}, {"new", 300}, {"mid", 200}}) {
    RecoveryWriter ended(folder, id);
    ASSERT_TRUE(ended.Write(SampleRecord("", time, id), error));
  }
  test::WriteText(folder / "notes.recovery", "not a recovery file");
  {
    const std::vector<OrphanedRecovery> found = FindOrphanedRecoveries(folder);
    ASSERT_EQ(found.size(), 3u);
    EXPECT_EQ(found[0].Record().Text, "new");
    EXPECT_EQ(found[1].Record().Text, "mid");
    EXPECT_EQ(found[2].Record().Text, "old");
  }
  EXPECT_EQ(FindOrphanedRecoveries(folder).size(), 3u);
  EXPECT_TRUE(fs::exists(running.File()));
}

TEST_F(RecoveryFolderTest, UnwritableFolderFailsWithAReason) {
  test::WriteText(scratch / "blocked", "a file where the folder should be");
  RecoveryWriter writer(scratch / "blocked" / "recovery", "one");
  FileError error;
  EXPECT_FALSE(writer.Write(SampleRecord("", 1, "text"), error));
  EXPECT_FALSE(error.text.empty());
  EXPECT_FALSE(writer.HasFile());
}

// The per-user state folder follows XDG_STATE_HOME when it is absolute, else HOME.
TEST(RecoveryFile, DefaultFolderFollowsTheStateHome) {
  const test::ScopedEnv home("HOME", "/home/op");
  {
    const test::ScopedEnv state("XDG_STATE_HOME", "/var/state");
    EXPECT_EQ(DefaultRecoveryFolder(), fs::path("/var/state/zemtra/recovery"));
  }
  {
    const test::ScopedEnv state("XDG_STATE_HOME", "relative");
    EXPECT_EQ(DefaultRecoveryFolder(), fs::path("/home/op/.local/state/zemtra/recovery"));
  }
  const test::ScopedEnv state("XDG_STATE_HOME", std::nullopt);
  EXPECT_EQ(DefaultRecoveryFolder(), fs::path("/home/op/.local/state/zemtra/recovery"));
}

}  // namespace
}  // namespace zemtra
