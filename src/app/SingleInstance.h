#pragma once
// One running program per user and application folder: a second start hands its command line
// to the first over a local socket, character by character, ended by a carriage return, and
// ends.
#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>

class QLocalServer;
class QLocalSocket;

namespace zemtra {

class SingleInstance : public QObject {
  Q_OBJECT
 public:
  // `serverName` names the channel; DefaultServerName() for the real program.
  explicit SingleInstance(QString serverName, QObject* parent = nullptr);
  ~SingleInstance() override;

  // The channel of this user and application folder, so that test runs with their own folder
  // never reach the user's program.
  static QString DefaultServerName(const QString& applicationFolder);

  // True when another instance answers on the channel.
  bool OtherInstanceRunning(int timeoutMs = 500) const;
  // Sends `commandLine` and the end mark to the other instance; false when it cannot be reached.
  bool HandOver(const QString& commandLine, int timeoutMs = 2000) const;
  // Starts answering on the channel; a stale channel of a crashed instance is taken over.
  // False when another instance holds it.
  bool Listen();
  bool IsListening() const;
  QString ServerName() const { return serverName_; }

 signals:
  // A complete command line has arrived from another start (possibly empty).
  void commandLineReceived(const QString& commandLine);

 private:
  void AcceptConnections();
  void ReadFrom(QLocalSocket* socket);

  QString serverName_;
  QLocalServer* server_ = nullptr;
  QHash<QLocalSocket*, QByteArray> buffers_;
};

}  // namespace zemtra
