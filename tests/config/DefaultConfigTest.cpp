// The configurations shipped in data/CONFIG.
#include <gtest/gtest.h>

#include "config/ConfigEdits.h"
#include "core/NumberText.h"
#include "core/RecordingHost.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

class DefaultConfig : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = (test::SourceDataDir() / "CONFIG" / "default.zmt").string();
    if (test::SourceDataDir().empty()) GTEST_SKIP() << "source data folder unknown";
    std::string path = path_;
    RecordingHost host;
    ASSERT_TRUE(LoadConfig(path, record_, host, test::SourceDataDir()));
    ASSERT_TRUE(host.shown.empty());
  }

  std::string path_;
  MachineConfig record_;
};

TEST_F(DefaultConfig, IsAMillWithTheDefaultSettings) {
  MachineConfig expected;
  ReadConfigRecord(ConfigText("[MACHINE]\r\n"), expected);
  expected.ConfigName = "default";
  expected.ConfigPath = path_;
  // Only the colours and the zero work offsets are chosen for the shipped machine.
  for (ColorValue MachineConfig::*color :
       {&MachineConfig::BackgroundColor, &MachineConfig::SelectionColor,
        &MachineConfig::MarkerColor, &MachineConfig::G00Color, &MachineConfig::G01Color,
        &MachineConfig::G02Color, &MachineConfig::G03Color, &MachineConfig::UnspecifiedToolColor}) {
    expected.*color = record_.*color;
  }
  expected.ToolColors = record_.ToolColors;
  for (int i = 0; i < kWorkOffsetCount; ++i) {
    const auto n = [i](int axis) { return FormatNumberText(WorkOffsetVariable(i, axis), "0"); };
    expected.WorkOffsetText[i] = "#" + n(0) + "=0 #" + n(1) + "=0 #" + n(2) + "=0 #" + n(3) + "=0";
  }
  EXPECT_EQ(record_, expected);
}

TEST_F(DefaultConfig, ColoursStandOutFromTheBackground) {
  const auto distance = [](ColorValue a, ColorValue b) {
    int sum = 0;
    for (int shift = 0; shift < 24; shift += 8)
      sum += std::abs(((a >> shift) & 255) - ((b >> shift) & 255));
    return sum;
  };
  ASSERT_GE(record_.ToolColorCount(), 8);
  std::vector<ColorValue> pens = record_.ToolColors;
  pens.insert(pens.end(), {record_.SelectionColor, record_.MarkerColor, record_.G00Color,
                           record_.G01Color, record_.G02Color, record_.G03Color});
  for (ColorValue pen : pens) EXPECT_GE(distance(pen, record_.BackgroundColor), 200) << pen;
}

// A loaded configuration saved unchanged gives the same bytes. The mill is in the written form
// as it stands; the lathe is taken in the form a first save gives it. Both carry zero work
// offsets, so the variable store reads 0 throughout.
TEST(ShippedConfigs, SaveByteForByteAsLoaded) {
  if (test::SourceDataDir().empty()) GTEST_SKIP() << "source data folder unknown";
  for (const char* name : {"default", "Lathe"}) {
    SCOPED_TRACE(name);
    test::ScratchFolder folder;
    const auto loadAndSave = [&folder](const std::filesystem::path& from, const std::string& to) {
      std::string path = from.string();
      MachineConfig record;
      RecordingHost host;
      ASSERT_TRUE(LoadConfig(path, record, host, folder.path()));
      ASSERT_TRUE(SaveConfig(to, record, [](int) { return std::string("0"); }));
    };
    const std::filesystem::path shipped = ConfigFilePath(test::SourceDataDir(), name);
    const std::string first = (folder / "first.zmt").string();
    const std::string second = (folder / "second.zmt").string();
    loadAndSave(shipped, first);
    loadAndSave(first, second);
    EXPECT_EQ(test::ReadFileBytes(second), test::ReadFileBytes(first));
    if (std::string(name) == "default") {
      EXPECT_EQ(test::ReadFileBytes(first), test::ReadFileBytes(shipped));
    }
  }
}

}  // namespace
}  // namespace zemtra
