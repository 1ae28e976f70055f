#include "core/AppFolder.h"

#include <gtest/gtest.h>

#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;
using test::ReadFileBytes;
using test::ScopedEnv;
using test::ScratchFolder;
using test::WriteText;

TEST(FindPathNoCase, MatchesEachComponentWithoutCase) {
  ScratchFolder scratch;
  const fs::path& base = scratch.path();
  WriteText(base / "Config" / "Default.ZMT", "");
  WriteText(base / "Config" / "Mill" / "G810.prg", "");
  WriteText(base / "abc", "");
  WriteText(base / "ABC", "");
  const struct {
    const char* relative;
    fs::path expected;
  } cases[] = {
      {"CONFIG\\default.zmt", base / "Config" / "Default.ZMT"},
      {"config/MILL/g810.PRG", base / "Config" / "Mill" / "G810.prg"},
      {"/Config//Mill\\", base / "Config" / "Mill"},
      {"ABC", base / "ABC"},  // an exact match wins
      {"Abc", base / "ABC"},  // else the first in name order
      {"CONFIG/G820.PRG", base / "Config" / "G820.PRG"},
      {"Missing/Default.ZMT", base / "Missing" / "Default.ZMT"},
      {"", base},
  };
  for (const auto& c : cases) EXPECT_EQ(FindPathNoCase(base, c.relative), c.expected) << c.relative;
  EXPECT_EQ(FindPathNoCase(base / "none", "A\\b"), base / "none" / "A" / "b");
}

// A shipped data folder and a user's folder made from an older version of it.
class SeedFolderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    WriteText(from() / "CONFIG" / "default.zmt", "shipped");
    WriteText(from() / "CONFIG" / "G810.PRG", "cycle");
    WriteText(from() / "DNC" / "fanuc.rs", "rs");
    WriteText(from() / "demo.nc", "G0 X0");
    WriteText(to() / "Config" / "default.zmt", "user");
  }
  fs::path from() const { return source_.path(); }
  fs::path to() const { return target_.path() / "home"; }

  ScratchFolder source_, target_;
};

TEST_F(SeedFolderTest, FillsWhatIsMissingAndKeepsTheUsersFiles) {
  std::string error;
  EXPECT_TRUE(SeedFolder(from(), to(), &error)) << error;
  EXPECT_EQ(ReadFileBytes(to() / "Config" / "default.zmt"), "user");
  EXPECT_EQ(ReadFileBytes(to() / "Config" / "G810.PRG"), "cycle");
  EXPECT_FALSE(fs::exists(to() / "CONFIG"));  // the user's spelling of the folder is kept
  EXPECT_EQ(ReadFileBytes(to() / "DNC" / "fanuc.rs"), "rs");
  EXPECT_EQ(ReadFileBytes(to() / "demo.nc"), "G0 X0");

  fs::remove(to() / "Config" / "G810.PRG");
  WriteText(to() / "demo.nc", "edited");
  EXPECT_TRUE(SeedFolder(from(), to(), &error)) << error;
  EXPECT_EQ(ReadFileBytes(to() / "Config" / "G810.PRG"), "cycle");
  EXPECT_EQ(ReadFileBytes(to() / "demo.nc"), "edited");
}

TEST_F(SeedFolderTest, ManualsFollowTheShippedOnes) {
  WriteText(from() / "Manuals" / "Zemtra Manual.md", "new manual");
  WriteText(to() / "manuals" / "Zemtra Manual.md", "old manual");
  WriteText(to() / "manuals" / "notes.md", "mine");
  ASSERT_TRUE(SeedFolder(from(), to()));
  EXPECT_EQ(ReadFileBytes(to() / "manuals" / "Zemtra Manual.md"), "new manual");
  EXPECT_EQ(ReadFileBytes(to() / "manuals" / "notes.md"), "mine");
  EXPECT_EQ(ReadFileBytes(to() / "Config" / "default.zmt"), "user");
}

TEST_F(SeedFolderTest, CopiesOfReadOnlyFilesAreWritable) {
  fs::permissions(from() / "demo.nc", fs::perms::owner_read | fs::perms::group_read);
  ASSERT_TRUE(SeedFolder(from(), to()));
  EXPECT_NE(fs::status(to() / "demo.nc").permissions() & fs::perms::owner_write, fs::perms::none);
}

TEST_F(SeedFolderTest, IntoItselfOrBelowItselfEnds) {
  EXPECT_TRUE(SeedFolder(from(), from()));
  EXPECT_EQ(ReadFileBytes(from() / "CONFIG" / "default.zmt"), "shipped");

  const fs::path inside = from() / "home";
  EXPECT_TRUE(SeedFolder(from(), inside));
  EXPECT_EQ(ReadFileBytes(inside / "CONFIG" / "G810.PRG"), "cycle");
  EXPECT_FALSE(fs::exists(inside / "home"));
}

TEST_F(SeedFolderTest, ReportsAMissingSourceOrAnUnwritableTarget) {
  std::string error;
  EXPECT_FALSE(SeedFolder(from() / "none", to(), &error));
  EXPECT_NE(error.find("none"), std::string::npos) << error;

  error.clear();
  WriteText(target_.path() / "file", "");
  EXPECT_FALSE(SeedFolder(from(), target_.path() / "file" / "home", &error));
  EXPECT_FALSE(error.empty());
}

class ApplicationFolderTest : public ::testing::Test {
 protected:
  ScratchFolder scratch_;
  ScopedEnv zemtraHome_{"ZEMTRA_HOME", std::nullopt};
  ScopedEnv xdgDataHome_{"XDG_DATA_HOME", std::nullopt};
  ScopedEnv home_{"HOME", scratch_.path().string()};
};

TEST_F(ApplicationFolderTest, PathFollowsTheEnvironment) {
  EXPECT_EQ(ApplicationFolderPath(), scratch_.path() / ".local" / "share" / "Zemtra");
  {
    ScopedEnv relative("XDG_DATA_HOME", "relative/data");
    EXPECT_EQ(ApplicationFolderPath(), scratch_.path() / ".local" / "share" / "Zemtra");
  }
  {
    ScopedEnv xdg("XDG_DATA_HOME", (scratch_.path() / "data").string());
    EXPECT_EQ(ApplicationFolderPath(), scratch_.path() / "data" / "Zemtra");
    ScopedEnv explicitHome("ZEMTRA_HOME", "/opt/zemtra-portable");
    EXPECT_EQ(ApplicationFolderPath(), "/opt/zemtra-portable");
  }
  ScopedEnv noHome("HOME", std::nullopt);
  std::string error;
  EXPECT_EQ(ApplicationFolderPath(&error), fs::path());
  EXPECT_FALSE(error.empty());
}

TEST_F(ApplicationFolderTest, PerUserFolderIsSeededAndRefilled) {
  const fs::path data = ShippedDataFolder();
  if (data.empty()) GTEST_SKIP() << "no shipped data folder";
  std::string error;
  const fs::path folder = ApplicationFolder(&error);
  EXPECT_EQ(error, "");
  ASSERT_EQ(folder, scratch_.path() / ".local" / "share" / "Zemtra");
  fs::path shippedFile;
  for (const auto& entry : fs::recursive_directory_iterator(data)) {
    const fs::path relative = fs::relative(entry.path(), data);
    EXPECT_TRUE(fs::exists(folder / relative)) << relative;
    if (entry.is_regular_file()) shippedFile = relative;
  }
  if (shippedFile.empty()) return;
  fs::remove(folder / shippedFile);
  ApplicationFolder();
  EXPECT_TRUE(fs::exists(folder / shippedFile)) << shippedFile;
}

TEST_F(ApplicationFolderTest, ExplicitHomeIsSeededOnlyWhenNew) {
  if (ShippedDataFolder().empty()) GTEST_SKIP() << "no shipped data folder";
  const fs::path fresh = scratch_.path() / "fresh";
  {
    ScopedEnv explicitHome("ZEMTRA_HOME", fresh.string());
    EXPECT_EQ(ApplicationFolder(), fresh);
    EXPECT_FALSE(fs::is_empty(fresh));
  }
  const fs::path fixture = scratch_.path() / "fixture";
  WriteText(fixture / "CONFIG" / "only.zmt", "");
  ScopedEnv explicitHome("ZEMTRA_HOME", fixture.string());
  EXPECT_EQ(ApplicationFolder(), fixture);
  EXPECT_EQ(std::distance(fs::recursive_directory_iterator(fixture), {}), 2);
}

TEST_F(ApplicationFolderTest, UnwritableHomeIsReported) {
  WriteText(scratch_.path() / "blocked", "");
  ScopedEnv xdg("XDG_DATA_HOME", (scratch_.path() / "blocked").string());
  std::string error;
  EXPECT_EQ(ApplicationFolder(&error), scratch_.path() / "blocked" / "Zemtra");
  EXPECT_FALSE(error.empty());
}

}  // namespace
}  // namespace zemtra
