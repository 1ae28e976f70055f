#include <gtest/gtest.h>

#include "config/ConfigFile.h"
#include "core/RecordingHost.h"

namespace zemtra {
namespace {

TEST(ApplyConfig, PutsTheRecordInForceAndRunsTheWorkOffsetsInOrder) {
  for (const std::int16_t machineType : {0, 1}) {
    SCOPED_TRACE(machineType == 0 ? "mill" : "lathe");
    MachineConfig record;
    record.ConfigName = "my LATHE-2x";
    record.MachineType = machineType;
    record.LatheXDiameter = kFlagTrue;
    record.LatheReverseArcs = kFlagTrue;
    record.WorkOffsetText = {"#5221=1", "", "#5261=3", "", "", "#5321=6 #5322=7"};
    ConfigSession session;
    session.EditConfig.InitialState = "G20";
    RecordingHost host;
    std::vector<std::string> statements;
    ApplyConfig(record, session, host,
                [&statements](const std::string& line) { statements.push_back(line); });

    MachineConfig expected = record;
    if (machineType == 0) {  // a mill never keeps lathe words
      expected.LatheXDiameter = kFlagFalse;
      expected.LatheReverseArcs = kFlagFalse;
    }
    EXPECT_EQ(session.ActiveConfig, expected);
    EXPECT_EQ(session.EditConfig.InitialState, "G20");
    EXPECT_EQ(statements, (std::vector<std::string>{"#5221=1", "#5261=3", "#5321=6 #5322=7"}));
    EXPECT_EQ(host.statuses, (decltype(host.statuses){{"cfg", "  My Lathe-2x  "}}));
  }
}

}  // namespace
}  // namespace zemtra
