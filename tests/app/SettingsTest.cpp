// Persisted settings: the reading rules, a full round trip through the INI file, the recent
// files list and the window's placement.
#include <QFile>
#include <QTest>
#include <set>

#include "app/AppSettings.h"
#include "app/AppTestSupport.h"
#include "app/QtSettingsStore.h"
#include "core/SettingsStore.h"
#include "view/DrawSettings.h"
#include "view/ViewState.h"

namespace zemtra::test {

static bool Always(const std::string&) {
  return true;
}

class SettingsTest : public QObject {
  Q_OBJECT
 private slots:
  // Flags are "True" only when so written; the numeric ones take -1, "True" or any non-zero
  // number. A value that cannot be read, or is not stored, keeps the default.
  void ValuesAreReadByTheirRules() {
    MemorySettingsStore store;
    store.SaveSetting("General", "Auto Refresh Enabled", "true");  // not "True": off
    store.SaveSetting("General", "Colorize", "0");
    store.SaveSetting("General", "Block Skip", "-1");
    store.SaveSetting("General", "Font Bold", "True");
    store.SaveSetting("General", "Font Size", "12.5pt");
    store.SaveSetting("Preferences", "Plot When File Loaded", "False");
    store.SaveSetting("Preferences", "Display Precision", "99999");  // beyond 16 bits
    store.SaveSetting("Preferences", "Animate Delay", "");           // empty: kept
    store.SaveSetting("Preferences", "Address Color 7", "255");
    store.SaveSetting("Preferences", "Address Color 8", "");
    AppSettings settings;
    const std::int32_t paletteEight = settings.Preferences.AddressColors[8];
    ViewState view;
    DrawSwitches switches;
    LoadSettings(store, settings, Always, view, switches);
    QCOMPARE(settings.General.AutoRefreshEnabled, false);
    QCOMPARE(settings.General.Colorize, false);
    QCOMPARE(settings.General.BlockSkip, true);
    QCOMPARE(settings.General.FontBold, true);
    QCOMPARE(settings.General.FontSize, 12.5);
    QCOMPARE(settings.Preferences.PlotWhenFileLoaded, false);
    QCOMPARE(settings.Preferences.DisplayPrecision, std::int16_t(4));
    QCOMPARE(settings.Preferences.AnimateDelay, 100);
    QCOMPARE(settings.Preferences.AddressColors[7], 255);
    QCOMPARE(settings.Preferences.AddressColors[8], paletteEight);
    QCOMPARE(settings.Formats().Short, std::string("###0.0###"));
    // Not stored at all: as a new record has it.
    const AppSettings fresh;
    QCOMPARE(settings.General.MultiInstance, fresh.General.MultiInstance);
    QCOMPARE(settings.General.FontName, fresh.General.FontName);
    QCOMPARE(settings.Preferences.AutoRefreshDelay, fresh.Preferences.AutoRefreshDelay);
    QCOMPARE(settings.Preferences.DXFMaxJoinDistance, fresh.Preferences.DXFMaxJoinDistance);
    QCOMPARE(settings.Subprograms.IgnoreM98, fresh.Subprograms.IgnoreM98);
    QCOMPARE(view.ViewAngle, ViewState().ViewAngle);
    QCOMPARE(switches.ShowAxisLines, DrawSwitches().ShowAxisLines);
  }

  // Everything written at exit reads back the same, through the real INI file; the file is the
  // INI layout the command-line tool reads, where "General" is an escaped group.
  void SavedSettingsReadBackAlike() {
    const Scratch scratch;
    AppSettings saved;
    saved.ComConfig = "Fanuc";
    saved.General.MultiInstance = true;
    saved.General.LastPath = "/parts/";
    saved.General.FontName = "DejaVu Sans Mono";
    saved.Preferences.AutoRefreshDelay = 750;
    saved.Preferences.DisplayPrecision = 6;
    saved.Preferences.WarningReset = 2;
    saved.Preferences.AddressColors[27] = 0x123456;
    saved.TextToGCode.Radius = 12.25;
    saved.Subprograms.SubProgramFiles = {{12, "/p/O12.nc"}, {0, "/p/none.nc"}, {9001, "/p/O9001.nc"}};
    saved.Recent.Add("/p/b.nc");
    saved.Recent.Add("/p/a.nc");
    ViewState view;
    view.CurrentView = 6;
    view.SetViewAngle(42.5);
    DrawSwitches switches;
    switches.ShowRapid = false;
    {
      QtSettingsStore store(scratch.SettingsFile());
      store.SaveSetting("Subprograms", "Program 77", "stale");  // the section is written anew
      SaveSettings(store, saved, view, switches);
      QVERIFY(store.Sync());
    }
    QtSettingsStore store(scratch.SettingsFile());
    AppSettings loaded;
    ViewState loadedView;
    DrawSwitches loadedSwitches;
    LoadSettings(store, loaded, Always, loadedView, loadedSwitches);
    QCOMPARE(loaded.ComConfig, saved.ComConfig);
    QCOMPARE(loaded.General.MultiInstance, true);
    QCOMPARE(loaded.General.LastPath, saved.General.LastPath);
    QCOMPARE(loaded.General.FontName, saved.General.FontName);
    QCOMPARE(loaded.Preferences.AutoRefreshDelay, 750);
    QCOMPARE(loaded.Preferences.DisplayPrecision, std::int16_t(6));
    QCOMPARE(loaded.Preferences.WarningReset, std::int16_t(2));
    QCOMPARE(loaded.Preferences.AddressColors, saved.Preferences.AddressColors);
    QCOMPARE(loaded.TextToGCode.Radius, 12.25);
    QCOMPARE(loaded.Subprograms.SubProgramFiles.size(), std::size_t(2));
    QCOMPARE(loaded.Subprograms.SubProgramFiles[0].Number, 12);
    QCOMPARE(loaded.Subprograms.SubProgramFiles[1].FileName, std::string("/p/O9001.nc"));
    QCOMPARE(loaded.Recent.At(0), std::string("/p/a.nc"));
    QCOMPARE(loaded.Recent.At(1), std::string("/p/b.nc"));
    QCOMPARE(loadedView.CurrentView, std::int16_t(6));
    QCOMPARE(loadedView.ViewAngle, 42.5);
    QCOMPARE(loadedSwitches.ShowRapid, false);
    // The stored texts are those of the settings table.
    QCOMPARE(store.GetSetting("General", "Multi Instance"), std::string("-1"));
    QCOMPARE(store.GetSetting("General", "ShowRapid"), std::string("False"));
    QCOMPARE(store.GetSetting("Recent Files", "File20", "absent"), std::string(""));
    QCOMPARE(store.GetSetting("Subprograms", "Program 12"), std::string("/p/O12.nc"));
    QFile file(scratch.SettingsFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY2(text.contains("[%General]"), text.constData());
    QVERIFY2(text.contains("Multi%20Instance=-1"), text.constData());
    QVERIFY2(text.contains("[Preferences]"), text.constData());
    QVERIFY2(text.contains("Auto%20Refresh%20Delay=750"), text.constData());
  }

  // The user's file is the one the command-line tool shares.
  void UserSettingsLiveWhereTheCommandLineToolLooks() {
    const QString file = QtSettingsStore().FileName();
    QVERIFY2(file.endsWith("/Zemtra/Zemtra.conf"), qPrintable(file));
  }

  void RecentFilesKeepTheNewestOnTop() {
    RecentFiles recent;
    QVERIFY(recent.Add("/a.nc"));
    QVERIFY(recent.Add("/b.nc"));
    QVERIFY(!recent.Add("/b.nc"));  // already on top: nothing to rebuild
    QVERIFY(recent.Add("/A.NC"));   // the same file in another case moves up
    QCOMPARE(recent.At(0), std::string("/A.NC"));
    QCOMPARE(recent.At(1), std::string("/b.nc"));
    QCOMPARE(recent.At(2), std::string(""));
    for (int i = 0; i < 25; ++i) recent.Add("/f" + std::to_string(i) + ".nc");
    QCOMPARE(recent.At(0), std::string("/f24.nc"));
    QCOMPARE(recent.At(20), std::string("/f4.nc"));  // the oldest fell off
    QVERIFY(recent.Remove("/f10.nc"));
    QCOMPARE(recent.At(14), std::string("/f9.nc"));
    QCOMPARE(recent.At(20), std::string(""));
    QVERIFY(!recent.Remove("/nowhere.nc"));
  }

  // Files deleted since are dropped at the next start and the list closes up.
  void MissingRecentFilesCloseUp() {
    MemorySettingsStore store;
    store.SaveSetting("Recent Files", "File00", "/gone.nc");
    store.SaveSetting("Recent Files", "File01", "/kept1.nc");
    store.SaveSetting("Recent Files", "File05", "/kept2.nc");
    RecentFiles recent;
    recent.Load(store, [](const std::string& path) { return path != "/gone.nc"; });
    QCOMPARE(recent.At(0), std::string("/kept1.nc"));
    QCOMPARE(recent.At(1), std::string("/kept2.nc"));
    QCOMPARE(recent.At(2), std::string(""));
  }

  void PlacementRulesOfTheStartUpSection() {
    MemorySettingsStore store;
    store.SaveSetting("StartUp", "Pane1Width", "999");
    store.SaveSetting("StartUp", "Pane2Width", "500");
    store.SaveSetting("StartUp", "Top", "-5");
    store.SaveSetting("StartUp", "Width", "0");
    store.SaveSetting("StartUp", "WindowState", "2");
    const PaneLayout panes = LoadPaneLayout(store, 8000);
    QCOMPARE(panes.PaneWidth1, 4000);  // under 1000 becomes 4000
    QCOMPARE(panes.PaneWidth2, 500);   // the second pane has no floor
    const WindowPlacement placement =
        LoadWindowPlacement(store, WindowPlacement{100, 200, 15000, 9000, 0});
    QCOMPARE(placement.Top, 0.0f);
    QCOMPARE(placement.Left, 200.0f);
    QCOMPARE(placement.Width, 15000.0f);
    QCOMPARE(placement.Height, 9000.0f);
    QCOMPARE(placement.WindowState, std::int16_t(2));
  }
};

ZEMTRA_TEST_CLASS(SettingsTest)

}  // namespace zemtra::test

#include "SettingsTest.moc"
