#include <QApplication>

#include "app/Plot.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName("Zemtra");
  zemtra::Plot window;
  window.show();
  return QApplication::exec();
}
