#include "core/TempFiles.h"

#include <gtest/gtest.h>

#include <set>

#include "support/ScratchFolder.h"
#include "core/TextUtil.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;
using test::ScopedEnv;
using test::ScratchFolder;
using test::WriteText;

TEST(TempFileName, CreatesDistinctZmtFilesInTheTempFolder) {
  ScratchFolder scratch;
  ScopedEnv tmpdir("TMPDIR", scratch.path().string());
  std::set<std::string> names;
  for (int i = 0; i < 50; ++i) {
    const std::string name = TempFileName();
    ASSERT_FALSE(name.empty());
    EXPECT_TRUE(fs::is_regular_file(name)) << name;
    EXPECT_EQ(fs::path(name).parent_path(), scratch.path());
    EXPECT_TRUE(StartsWithNoCase(FileNameOf(name), "zmt")) << name;
    EXPECT_TRUE(EndsWithNoCase(name, ".tmp")) << name;
    names.insert(name);
  }
  EXPECT_EQ(names.size(), 50u);
}

TEST(RemoveTempFiles, DeletesOnlyZmtTmpFiles) {
  ScratchFolder scratch;
  const fs::path& dir = scratch.path();
  for (const char* name :
       {"zmta.tmp", "ZMTB.TMP", "zmt.tmp", "other.tmp", "zmtx.txt", "azmt.tmp"}) {
    WriteText(dir / name, "x");
  }
  fs::create_directory(dir / "zmtdir.tmp");
  RemoveTempFiles(dir);
  std::set<std::string> left;
  for (const auto& entry : fs::directory_iterator(dir)) left.insert(entry.path().filename());
  EXPECT_EQ(left, (std::set<std::string>{"other.tmp", "zmtx.txt", "azmt.tmp", "zmtdir.tmp"}));
}

TEST(RemoveTempFiles, RemovesWhatTempFileNameMadeAndNeverThrows) {
  ScratchFolder scratch;
  ScopedEnv tmpdir("TMPDIR", scratch.path().string());
  const std::string first = TempFileName(), second = TempFileName();
  RemoveTempFiles();
  EXPECT_FALSE(fs::exists(first));
  EXPECT_FALSE(fs::exists(second));
  EXPECT_NO_THROW(RemoveTempFiles(scratch.path() / "missing"));
}

}  // namespace
}  // namespace zemtra
