#pragma once
// The keyed panels of the main window's status bar: "msg" (messages, stretching), "line",
// "edit", "cfg", "bskip", "pos", "script", and a progress bar for long operations. Each panel
// is a label whose object name is its key.
#include <QObject>
#include <QString>
#include <map>
#include <string>
#include <string_view>

class QLabel;
class QProgressBar;
class QStatusBar;

namespace zemtra {

class StatusPanels : public QObject {
  Q_OBJECT
 public:
  explicit StatusPanels(QStatusBar* bar);

  // Sets the text of panel `key`; an unknown key is ignored.
  void Set(std::string_view key, std::string_view text);
  void Set(std::string_view key, const QString& text);
  void Set(std::string_view key, const char* text) { Set(key, std::string_view(text)); }
  QString Text(std::string_view key) const;
  QLabel* Panel(std::string_view key) const;

  // 0 to 100 shows the bar at that value; a negative value hides it.
  void SetProgress(int percent);

 signals:
  // The "bskip" panel was clicked.
  void blockSkipClicked();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::map<std::string, QLabel*, std::less<>> panels_;
  QProgressBar* progress_ = nullptr;
};

}  // namespace zemtra
