#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTimer>
#include <QWidget>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/Plot.h"
#include "app/QtSettingsStore.h"
#include "app/SingleInstance.h"
#include "app/StartUp.h"
#include "core/AppFolder.h"
#include "core/TempFiles.h"

namespace {

std::vector<std::string> Arguments(const QStringList& all) {
  std::vector<std::string> arguments;
  for (qsizetype i = 1; i < all.size(); ++i) arguments.push_back(all[i].toStdString());
  return arguments;
}

// For checking the window without a screen: ZEMTRA_GRAB=out.png saves a picture of the window
// once it has started and drawn, and quits. When a message box is still up after a while (a
// program stop, an arc error), the window and the box ("out-dialog.png") are saved as they are.
void SaveWindowPictures(zemtra::Plot& window, const QString& path) {
  window.grab().save(path);
  if (QWidget* modal = QApplication::activeModalWidget()) {
    QString dialogPath = path;
    dialogPath.insert(dialogPath.lastIndexOf('.'), "-dialog");
    modal->grab().save(dialogPath);
  }
}

void GrabWhenStarted(zemtra::Plot& window) {
  const QString grab = qEnvironmentVariable("ZEMTRA_GRAB");
  if (grab.isEmpty()) return;
  QObject::connect(&window, &zemtra::Plot::startUpFinished, &window, [&window, grab] {
    QTimer::singleShot(400, &window, [&window, grab] {
      window.grab().save(grab);
      QApplication::quit();
    });
  });
  QTimer::singleShot(8000, &window, [&window, grab] {
    SaveWindowPictures(window, grab);
    std::quick_exit(0);  // a message box's own loop would outlive quit()
  });
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName("Zemtra");
  QApplication::setOrganizationName("Zemtra");

  // Create the user's folder on first start and bring in any shipped file it lacks.
  std::string folderError;
  const std::filesystem::path folder = zemtra::ApplicationFolder(&folderError);
  if (!folderError.empty()) {
    QMessageBox::warning(nullptr, "Zemtra", QString::fromStdString(folderError));
  }

  zemtra::PlotEnvironment environment;
  environment.ApplicationFolder = folder;
  environment.Settings = std::make_shared<zemtra::QtSettingsStore>();
  environment.InstanceChannel =
      zemtra::SingleInstance::DefaultServerName(QString::fromStdString(folder.string()));
  environment.CommandLine = zemtra::CommandLineFromArguments(Arguments(QApplication::arguments()),
                                                             QDir::currentPath().toStdString());

  int status = 0;
  {
    zemtra::Plot window(environment);
    auto* startUp = new zemtra::StartUp(window);
    switch (startUp->Run()) {
      case zemtra::StartUp::Outcome::HandedOver:
        return 0;
      case zemtra::StartUp::Outcome::NoConfiguration:
        return 1;
      case zemtra::StartUp::Outcome::Ready:
        break;
    }
    GrabWhenStarted(window);
    window.show();
    status = QApplication::exec();
  }
  zemtra::RemoveTempFiles();
  return status;
}
