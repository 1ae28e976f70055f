#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <string>

#include "app/Plot.h"
#include "core/AppFolder.h"
#include "core/TempFiles.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName("Zemtra");

  // Create the user's folder on first start and bring in any shipped file it lacks.
  std::string folderError;
  zemtra::ApplicationFolder(&folderError);
  if (!folderError.empty()) {
    QMessageBox::warning(nullptr, "Zemtra", QString::fromStdString(folderError));
  }

  int status = 0;
  {
    zemtra::Plot window;
    window.show();
    // For checking the window without a screen: ZEMTRA_GRAB=out.png saves a picture and quits.
    if (const QString grab = qEnvironmentVariable("ZEMTRA_GRAB"); !grab.isEmpty()) {
      QTimer::singleShot(500, &window, [&window, grab] {
        window.grab().save(grab);
        QApplication::quit();
      });
    }
    status = QApplication::exec();
  }
  zemtra::RemoveTempFiles();
  return status;
}
