#include "app/TransmitWindow.h"

#include <gtest/gtest.h>

#include <QPointer>
#include <filesystem>
#include <string>

#include "PtyPair.h"
#include "core/RecordingHost.h"
#include "core/SettingsStore.h"
#include "dnc/ComConfig.h"

namespace zemtra {
namespace {

using test::PtyPair;
using test::RunEventsUntil;

struct WindowFixture {
  explicit WindowFixture(const std::string& port) {
    session.ConfigName = "Line";
    session.Config.Port = port;
    session.Config.Baud = 115200;
    session.Config.DataBits = 8;
    session.Config.Parity = "None";
  }
  test::ScratchFolder scratch;
  DncSession session;
  RecordingHost host;
  MemorySettingsStore settings;
};

TEST(TransmitWindow, SendsToTheEndThenDeletesItsTemporaryFile) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  WindowFixture fixture(pair.NearPath());
  const std::string program = test::ProgramOfSize(3000);
  const std::string path = fixture.scratch.Write("part.nc", program);
  QPointer<TransmitWindow> window =
      new TransmitWindow(fixture.session, fixture.host, fixture.settings, path, "PART.NC", true);
  EXPECT_EQ(window->windowTitle(), "Transmit Ready");
  window->Start();
  EXPECT_EQ(pair.ReadUntil(program.size(), 5000), program);
  ASSERT_TRUE(
      RunEventsUntil([&] { return window->windowTitle() == "Transmitting Completed"; }, 5000));
  EXPECT_TRUE(window->close());
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_NE(fixture.settings.GetSetting("StartUp", "TX Left", "none"), "none");
  EXPECT_TRUE(fixture.host.shown.empty());
  RunEventsUntil([&] { return window.isNull(); }, 1000);
}

TEST(TransmitWindow, ClosingDuringASendAsksAndKeepsTheUsersFile) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  WindowFixture fixture(pair.NearPath());
  const std::string path = fixture.scratch.Write("big.nc", test::ProgramOfSize(600000));
  QPointer<TransmitWindow> window =
      new TransmitWindow(fixture.session, fixture.host, fixture.settings, path, "BIG.NC", false);
  window->Start();
  pair.ReadUntil(1000, 5000);  // the machine stops reading: the send is held up
  window->Pause();
  ASSERT_TRUE(
      RunEventsUntil([&] { return window->windowTitle().startsWith("Transmitting - "); }, 2000));
  fixture.host.queueAnswer(MsgAnswer::No);
  EXPECT_FALSE(window->close());
  ASSERT_EQ(fixture.host.shown.size(), 1u);
  EXPECT_EQ(fixture.host.shown[0].prompt.text, "Abort Current Transmission?");
  EXPECT_EQ(fixture.host.shown[0].prompt.title, "Closing");
  EXPECT_TRUE(window->Busy());
  fixture.host.queueAnswer(MsgAnswer::Yes);
  EXPECT_TRUE(window->close());
  EXPECT_TRUE(std::filesystem::exists(path)) << "the user's own file was deleted";
  RunEventsUntil([&] { return window.isNull(); }, 1000);
}

}  // namespace
}  // namespace zemtra
