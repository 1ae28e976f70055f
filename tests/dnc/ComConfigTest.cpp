#include "dnc/ComConfig.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/AppFolder.h"
#include "core/RecordingHost.h"
#include "dnc/TransmitClock.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kWrittenText =
    "[COM SETUP]\r\n"
    "Port = 2\r\n"
    "Baud = 9600\r\n"
    "Data Bits = 7\r\n"
    "Stop Bits = 1\r\n"
    "Parity = Even\r\n"
    "Handshaking = 1\r\n"
    "\r\n"
    "[TRANSMIT OPTIONS]\r\n"
    "Strip Spaces = True\r\n"
    "Wait For XON = False\r\n"
    "\r\n"
    "[RECEIVE OPTIONS]\r\n"
    "RXTimeoutBefore = 30\r\n"
    "RXTimeoutAfter = 5\r\n"
    "\r\n";

ComConfig SampleConfig() {
  ComConfig config;
  config.Port = "2";
  config.Baud = 9600;
  config.DataBits = 7;
  config.StopBits = 1;
  config.Parity = "Even";
  config.Handshaking = 1;
  config.StripSpaces = true;
  config.RXTimeoutBefore = 30;
  config.RXTimeoutAfter = 5;
  return config;
}

// An application folder of its own with an empty DNC folder.
class DncFolder : public ::testing::Test {
 protected:
  DncFolder() { fs::create_directories(home_ / "DNC"); }
  void WriteFile(const std::string& name, std::string_view text) {
    scratch_.Write("DNC/" + name, text);
  }
  test::ScratchFolder scratch_;
  const fs::path home_ = scratch_.path();
  RecordingHost host_;
};

TEST(ComConfigFile, WritesTheSectionsAndReadsThemBack) {
  EXPECT_EQ(ComConfigText(SampleConfig()), kWrittenText);
  const ComConfig back = ReadComConfig(kWrittenText);
  EXPECT_EQ(ComConfigText(back), kWrittenText);
}

TEST(ComConfigFile, KeysInAnyCaseMissingKeysAndGarbage) {
  const ComConfig upper = ReadComConfig(
      "[COM SETUP]\nPORT = /dev/ttyUSB0\nBAUD=19200\nDATA BITS = 8\n[TRANSMIT OPTIONS]\n"
      "WAIT FOR XON = True\nSTRIP SPACES = true\n");
  EXPECT_EQ(upper.Port, "/dev/ttyUSB0");
  EXPECT_EQ(upper.Baud, 19200);
  EXPECT_EQ(upper.DataBits, 8);
  EXPECT_TRUE(upper.WaitForXON);
  EXPECT_FALSE(upper.StripSpaces) << "only the exact text True is true";

  const ComConfig empty = ReadComConfig("[COM SETUP]\nParity = None\n");
  EXPECT_EQ(empty.Baud, 0);
  EXPECT_EQ(empty.RXTimeoutAfter, 0);
  EXPECT_FALSE(empty.WaitForXON);

  const ComConfig garbled = ReadComConfig(
      std::string("\0\xff", 2) +
      "[COM SETUP\nBaud = fast\nStop Bits = 1e99\n[COM SETUP]\nBaud = 4800x\nData Bits = -1e300\n");
  EXPECT_EQ(garbled.Baud, 4800);
  EXPECT_EQ(garbled.DataBits, -2147483647 - 1);
}

TEST(ComConfigFile, PortNamesFollowLinux) {
  struct Case {
    const char* port;
    const char* device;
    const char* label;
  };
  for (const Case& c :
       {Case{"1", "/dev/ttyS0", "COM1"}, Case{"COM3", "/dev/ttyS2", "COM3"},
        Case{" com12 ", "/dev/ttyS11", "COM12"}, Case{"COM 2", "/dev/ttyS1", "COM2"},
        Case{"ttyUSB0", "/dev/ttyUSB0", "/dev/ttyUSB0"},
        Case{"/tmp/my port", "/tmp/my port", "/tmp/my port"},
        Case{"COMX", "/dev/COMX", "/dev/COMX"}, Case{"", "", ""}}) {
    EXPECT_EQ(PortDeviceName(c.port), c.device) << c.port;
    EXPECT_EQ(PortLabel(c.port), c.label) << c.port;
  }
}

TEST_F(DncFolder, LoadFindsTheFileAndDefaultsTheName) {
  WriteFile("default.RS", kWrittenText);
  std::string name;
  ComConfig config;
  ASSERT_TRUE(LoadComConfig(name, config, home_, host_));
  EXPECT_EQ(name, "Default");
  EXPECT_EQ(config.Baud, 9600);
  EXPECT_TRUE(host_.shown.empty());
}

TEST_F(DncFolder, MissingFileSaysSoAndKeepsTheFields) {
  std::string name = "Fanuc";
  ComConfig config = SampleConfig();
  EXPECT_FALSE(LoadComConfig(name, config, home_, host_));
  ASSERT_EQ(host_.shown.size(), 1u);
  EXPECT_EQ(host_.shown[0].prompt.text,
            "COM Config file not found!\r\n" + (home_ / "DNC" / "Fanuc.rs").string());
  EXPECT_EQ(host_.shown[0].prompt.title, "Zemtra");
  EXPECT_EQ(ComConfigText(config), kWrittenText);
}

TEST_F(DncFolder, SaveWritesExactlyAndNamesAreListed) {
  std::string error;
  ASSERT_TRUE(SaveComConfig(home_ / "DNC" / "Mazak.rs", SampleConfig(), &error)) << error;
  EXPECT_EQ(test::ReadFileBytes(home_ / "DNC" / "Mazak.rs"), kWrittenText);
  WriteFile("haas.RS", "");
  WriteFile("notes.txt", "");
  EXPECT_EQ(ComConfigNames(home_), (std::vector<std::string>{"haas", "Mazak"}));
  EXPECT_FALSE(SaveComConfig(home_ / "missing" / "x.rs", SampleConfig(), &error));
  EXPECT_FALSE(error.empty());
}

TEST_F(DncFolder, BaudZeroLoadsTheConfigurationInForce) {
  WriteFile("Fanuc.rs", kWrittenText);
  DncSession session;
  session.AppFolder = home_;
  session.ConfigName = "Fanuc";
  EXPECT_TRUE(session.EnsureComConfig(host_));
  EXPECT_EQ(session.Config.Baud, 9600);
  session.Config.Baud = 300;  // loaded already: left alone
  EXPECT_TRUE(session.EnsureComConfig(host_));
  EXPECT_EQ(session.Config.Baud, 300);
  DncSession missing;
  missing.AppFolder = home_;
  EXPECT_FALSE(missing.EnsureComConfig(host_));
  EXPECT_EQ(host_.shown.size(), 1u);
}

// The configuration shipped with the program reaches a new application folder, reads as
// 9600 8N1 with XON/XOFF, and is written as a save would write it.
TEST_F(DncFolder, ShippedDefaultIsSeededIntoANewFolder) {
  const fs::path folder = home_ / "new";
  std::string error;
  ASSERT_TRUE(SeedFolder(ShippedDataFolder(), folder, &error)) << error;
  std::string name;
  ComConfig config;
  ASSERT_TRUE(LoadComConfig(name, config, folder, host_));
  EXPECT_EQ(config.Port, "/dev/ttyUSB0");
  EXPECT_EQ(config.Baud, 9600);
  EXPECT_EQ(config.DataBits, 8);
  EXPECT_EQ(config.Parity, "None");
  EXPECT_EQ(config.StopBits, 0);
  EXPECT_EQ(config.Handshaking, 1);
  EXPECT_EQ(ComConfigText(config), test::ReadFileBytes(ComConfigPath(folder, name)));
}

TEST(TransmitClock, PausesAreNotCounted) {
  TransmitClock clock;
  clock.Start(100);
  EXPECT_DOUBLE_EQ(clock.Elapsed(103), 3);
  clock.Pause(103);
  clock.Pause(150);  // twice: the first holds
  EXPECT_DOUBLE_EQ(clock.Elapsed(200), 3);
  clock.Resume(200);
  clock.Resume(250);  // not paused: ignored
  EXPECT_DOUBLE_EQ(clock.Elapsed(205), 8);
  clock.Stop(210);
  EXPECT_DOUBLE_EQ(clock.Elapsed(999), 13);
  clock.Start(1000);
  EXPECT_DOUBLE_EQ(clock.Elapsed(1000), 0);
}

TEST(TransmitClock, ClockTexts) {
  EXPECT_EQ(ClockText(0), "0:00");
  EXPECT_EQ(ClockText(65.9), "1:05");
  EXPECT_EQ(ClockText(3600 + 2), "1:00:02");
  EXPECT_EQ(ClockText(2 * 86400 + 3 * 3600 + 4 * 60 + 5), "2:03:04:05");
  EXPECT_EQ(ClockText(-5), "0:00");
}

}  // namespace
}  // namespace zemtra
