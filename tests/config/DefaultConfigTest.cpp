#include <gtest/gtest.h>

#include "config/ConfigFile.h"
#include "core/NumberText.h"
#include "core/RecordingHost.h"
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

TEST_F(DefaultConfig, IsWrittenExactlyAsTheWriterWritesIt) {
  const std::string written = ConfigFileText(record_, [](int) { return std::string("0"); });
  EXPECT_EQ(test::ReadFileBytes(path_), written);
}

}  // namespace
}  // namespace zemtra
