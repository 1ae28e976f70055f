#include <gtest/gtest.h>

#include "config/ConfigEdits.h"
#include "core/RecordingHost.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;
using test::ScratchFolder;

TEST(ConfigEdits, MacroGCodeIsAddedOnceAsTenTimesTheNumberTyped) {
  MachineConfig record;
  EXPECT_EQ(AddExternalMacro(record, "12"), 120);
  EXPECT_EQ(AddExternalMacro(record, "12"), 0);
  EXPECT_EQ(AddExternalMacro(record, "G37.1"), 371);
  EXPECT_EQ(AddExternalMacro(record, "abc"), 0);
  EXPECT_EQ(AddExternalMacro(record, "99999"), 0);  // beyond a 16-bit code
  EXPECT_EQ(record.ExternalGCodeMacros, (std::vector<std::int16_t>{0, 120, 371}));
  EXPECT_EQ(ExternalMacroCaption(120), "G120");
  EXPECT_TRUE(RemoveExternalMacro(record, 120));
  EXPECT_FALSE(RemoveExternalMacro(record, 120));
  EXPECT_EQ(record.ExternalGCodeMacros, (std::vector<std::int16_t>{0, 371}));
}

TEST(ConfigEdits, ToolColoursAreAddedInsertedAndRemovedByToolNumber) {
  MachineConfig record;
  record.UnspecifiedToolColor = 7;
  record.ToolColors = {7, 1, 2};
  AddToolColor(record);        // 1 2 0
  InsertToolColor(record, 2);  // 1 0 2 0
  record.ToolColors[2] = 5;    // 1 5 2 0
  EXPECT_TRUE(RemoveToolColor(record, 3));
  EXPECT_FALSE(RemoveToolColor(record, 4));
  EXPECT_EQ(record.ToolColors, (std::vector<ColorValue>{7, 1, 5, 0}));
  EXPECT_EQ(ToolColorCaption(3), "03");
  EXPECT_EQ(ToolColorCaption(123), "123");
  EXPECT_EQ(NextTopViewOrientation(3), 0);
  EXPECT_EQ(NextTopViewOrientation(1), 2);
}

class SaveAs : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_.Write("CONFIG/mill.zmt", "[MACHINE]\r\n");
    folder_.Write("CONFIG/mill/G810.PRG", "G810 body\r\nM99\r\n");
    folder_.Write("CONFIG/mill/g830.prg", "G830 body\r\nM99\r\n");
    folder_.Write("CONFIG/mill/notes.txt", "not a macro");
    std::string path = (folder_.path() / "CONFIG/mill.zmt").string();
    RecordingHost host;
    ASSERT_TRUE(LoadConfig(path, record_, host, folder_.path()));
  }
  const VariableReader zeros_ = [](int) { return std::string("0"); };
  ScratchFolder folder_;
  MachineConfig record_;
};

TEST_F(SaveAs, NewNameGetsAMacroFolderWithCopiesOfTheMacros) {
  const std::string path = (folder_.path() / "CONFIG/Big.Mill.zmt").string();
  std::string error;
  ASSERT_TRUE(SaveConfigAs(path, record_, zeros_, folder_.path(), &error)) << error;
  EXPECT_EQ(test::ReadFileBytes(path), ConfigFileText(record_, zeros_));
  const fs::path macros = folder_.path() / "CONFIG/Big";
  EXPECT_EQ(test::ReadFileBytes(macros / "G810.PRG"), "G810 body\r\nM99\r\n");
  EXPECT_TRUE(fs::exists(macros / "g830.prg"));
  EXPECT_FALSE(fs::exists(macros / "notes.txt"));
  EXPECT_EQ(record_.ConfigName, "Big.Mill");
  EXPECT_EQ(record_.ConfigPath, path);
}

TEST_F(SaveAs, ExistingFileIsOnlyWritten) {
  const std::string path = folder_.Write("CONFIG/other.zmt", "old");
  ASSERT_TRUE(SaveConfigAs(path, record_, zeros_, folder_.path()));
  EXPECT_EQ(test::ReadFileBytes(path), ConfigFileText(record_, zeros_));
  EXPECT_FALSE(fs::exists(folder_.path() / "CONFIG/other"));
}

}  // namespace
}  // namespace zemtra
