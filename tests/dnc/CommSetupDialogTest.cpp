#include "app/CommSetupDialog.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <filesystem>
#include <string>

#include "core/RecordingHost.h"
#include "dnc/ComConfig.h"
#include "support/ScratchFolder.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

class CommSetup : public ::testing::Test {
 protected:
  CommSetup() {
    session_.AppFolder = scratch_.path();
    fs::create_directories(session_.AppFolder / "DNC");
  }
  template <typename T>
  T* Control(CommSetupDialog& dialog, const char* name) {
    T* control = dialog.findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(control, nullptr) << name;
    return control;
  }
  test::ScratchFolder scratch_;
  DncSession session_;
  RecordingHost host_;
};

TEST_F(CommSetup, WithoutFilesItSaysSoAndOffersDefault) {
  CommSetupDialog dialog(session_, host_);
  ASSERT_EQ(host_.shown.size(), 1u);
  EXPECT_EQ(host_.lastText(),
            "No config files found!\r\nPlease setup and save an RS232 configuration");
  QComboBox* list = Control<QComboBox>(dialog, "cmbConfig");
  ASSERT_EQ(list->count(), 1);
  EXPECT_EQ(list->itemText(0), "Default");
}

TEST_F(CommSetup, ShowsTheConfigurationInForceAndEditsIt) {
  ComConfig haas;
  haas.Port = "COM2";
  haas.Baud = 4800;
  haas.DataBits = 7;
  haas.StopBits = 1;
  haas.Parity = "Even";
  haas.Handshaking = 1;
  haas.WaitForXON = true;
  haas.RXTimeoutBefore = 30;
  ASSERT_TRUE(SaveComConfig(session_.AppFolder / "DNC" / "Haas.rs", haas));
  scratch_.Write("DNC/Fanuc.RS", "[COM SETUP]\nBaud = 31250\n");
  session_.ConfigName = "haas";
  CommSetupDialog dialog(session_, host_);
  EXPECT_TRUE(host_.shown.empty());
  EXPECT_EQ(Control<QComboBox>(dialog, "cmbConfig")->currentText(), "Haas");
  EXPECT_EQ(Control<QComboBox>(dialog, "cmbPort")->currentText(), "/dev/ttyS1");
  EXPECT_EQ(Control<QComboBox>(dialog, "cmbBaud")->currentText(), "4800");
  EXPECT_EQ(Control<QComboBox>(dialog, "cmbStopBits")->currentText(), "2");
  EXPECT_EQ(Control<QComboBox>(dialog, "cmbFlow")->currentText(), "Software");
  EXPECT_TRUE(Control<QCheckBox>(dialog, "chkWaitForXON")->isChecked());
  EXPECT_EQ(Control<QLineEdit>(dialog, "txtRXTimeoutBefore")->text(), "30");

  Control<QCheckBox>(dialog, "chkRemoveSpaces")->setChecked(true);
  EXPECT_TRUE(session_.Config.StripSpaces);
  EXPECT_EQ(session_.Config.Baud, 4800);

  QComboBox* list = Control<QComboBox>(dialog, "cmbConfig");
  const int fanuc = list->findText("Fanuc");
  ASSERT_GE(fanuc, 0);
  list->setCurrentIndex(fanuc);
  emit list->textActivated("Fanuc");
  EXPECT_EQ(session_.ConfigName, "Fanuc");
  EXPECT_EQ(session_.Config.Baud, 31250);
  EXPECT_EQ(Control<QComboBox>(dialog, "cmbBaud")->currentText(), "31250") << "shown as it is";
}

}  // namespace
}  // namespace zemtra
