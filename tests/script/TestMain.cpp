// The script host needs an application object: the tests make one before they run.
#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
