// Runs every test class of the desktop program's suite; the exit status counts the failures.
#include <QApplication>
#include <QTest>

#include "app/AppTestSupport.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM",
          qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
  QApplication application(argc, argv);
  using namespace zemtra::test;
  int failures = 0;
  for (auto make : {MakeCommandLineTests, MakeSettingsTests, MakeDocumentTests, MakeInstanceTests,
                    MakeViewportTests, MakeTextViewTests, MakeCommandsTests}) {
    for (const auto& test : make()) failures += QTest::qExec(test.get(), argc, argv);
  }
  return failures == 0 ? 0 : 1;
}
