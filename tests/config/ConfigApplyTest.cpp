#include <gtest/gtest.h>

#include "config/ConfigFile.h"
#include "core/RecordingHost.h"

namespace zemtra {
namespace {

struct Applied {
  ConfigSession session;
  RecordingHost host;
  std::vector<std::string> statements;

  void Apply(const MachineConfig& record) {
    ApplyConfig(record, session, host,
                [this](const std::string& line) { statements.push_back(line); });
  }
};

MachineConfig LatheWordsOn(std::int16_t machineType) {
  MachineConfig record;
  record.ConfigName = "my LATHE-2x";
  record.MachineType = machineType;
  record.LatheXDiameter = kFlagTrue;
  record.LatheReverseArcs = kFlagTrue;
  record.WorkOffsetText = {"#5221=1", "", "#5261=3", "", "", "#5321=6 #5322=7"};
  return record;
}

TEST(ApplyConfig, PutsTheRecordInForceAndRunsTheWorkOffsetsInOrder) {
  Applied applied;
  applied.session.EditConfig.InitialState = "G20";
  applied.Apply(LatheWordsOn(1));

  EXPECT_EQ(applied.session.ActiveConfig, LatheWordsOn(1));
  EXPECT_EQ(applied.session.EditConfig.InitialState, "G20");
  EXPECT_EQ(applied.statements,
            (std::vector<std::string>{"#5221=1", "#5261=3", "#5321=6 #5322=7"}));
  ASSERT_EQ(applied.host.statuses.size(), 1u);
  EXPECT_EQ(applied.host.statuses[0].first, "cfg");
  EXPECT_EQ(applied.host.statuses[0].second, "  My Lathe-2x  ");
}

TEST(ApplyConfig, MillNeverKeepsLatheWords) {
  Applied applied;
  const MachineConfig mill = LatheWordsOn(0);
  applied.Apply(mill);
  EXPECT_EQ(applied.session.ActiveConfig.LatheXDiameter, kFlagFalse);
  EXPECT_EQ(applied.session.ActiveConfig.LatheReverseArcs, kFlagFalse);
  EXPECT_EQ(mill.LatheXDiameter, kFlagTrue);  // the record applied stays as read
}

}  // namespace
}  // namespace zemtra
