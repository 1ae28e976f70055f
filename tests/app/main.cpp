// Runs the test classes of one window test program; the exit status counts the failures.
#include <QApplication>
#include <QTest>

#include "app/AppTestSupport.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM",
          qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
  QApplication application(argc, argv);
  int failures = 0;
  for (const auto& test : zemtra::test::MakeTests()) {
    failures += QTest::qExec(test.get(), argc, argv);
  }
  return failures == 0 ? 0 : 1;
}
