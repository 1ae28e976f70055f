#include "app/SingleInstance.h"

#include <QCryptographicHash>
#include <QLocalServer>
#include <QLocalSocket>

namespace zemtra {

namespace {
constexpr char kEndMark = '\r';
}

SingleInstance::SingleInstance(QString serverName, QObject* parent)
    : QObject(parent), serverName_(std::move(serverName)) {}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::DefaultServerName(const QString& applicationFolder) {
  const QByteArray user = qgetenv("USER");
  const QByteArray digest =
      QCryptographicHash::hash((user + '\n' + applicationFolder.toUtf8()), QCryptographicHash::Sha1)
          .toHex()
          .left(16);
  return "zemtra-" + QString::fromLatin1(digest);
}

bool SingleInstance::OtherInstanceRunning(int timeoutMs) const {
  QLocalSocket socket;
  socket.connectToServer(serverName_);
  const bool connected = socket.waitForConnected(timeoutMs);
  if (connected) socket.disconnectFromServer();
  return connected;
}

bool SingleInstance::HandOver(const QString& commandLine, int timeoutMs) const {
  QLocalSocket socket;
  socket.connectToServer(serverName_);
  if (!socket.waitForConnected(timeoutMs)) return false;
  QByteArray message = commandLine.toUtf8();
  message.append(kEndMark);
  socket.write(message);
  const bool written = socket.waitForBytesWritten(timeoutMs);
  socket.disconnectFromServer();
  if (socket.state() != QLocalSocket::UnconnectedState) socket.waitForDisconnected(timeoutMs);
  return written;
}

bool SingleInstance::Listen() {
  if (IsListening()) return true;
  if (OtherInstanceRunning()) return false;
  QLocalServer::removeServer(serverName_);  // left behind by an instance that crashed
  server_ = new QLocalServer(this);
  server_->setSocketOptions(QLocalServer::UserAccessOption);
  if (!server_->listen(serverName_)) {
    delete server_;
    server_ = nullptr;
    return false;
  }
  connect(server_, &QLocalServer::newConnection, this, &SingleInstance::AcceptConnections);
  return true;
}

bool SingleInstance::IsListening() const {
  return server_ != nullptr && server_->isListening();
}

void SingleInstance::AcceptConnections() {
  while (QLocalSocket* socket = server_->nextPendingConnection()) {
    buffers_.insert(socket, {});
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] { ReadFrom(socket); });
    connect(socket, &QLocalSocket::disconnected, this, [this, socket] {
      ReadFrom(socket);
      buffers_.remove(socket);
      socket->deleteLater();
    });
    ReadFrom(socket);
  }
}

// Characters gather until the end mark. Each complete text is passed on from the event loop,
// not from inside this read, so that opening the file may pump events safely; a text that
// arrives during a long operation is still delivered when that operation lets events run.
void SingleInstance::ReadFrom(QLocalSocket* socket) {
  const auto found = buffers_.find(socket);
  if (found == buffers_.end()) return;
  found->append(socket->readAll());
  for (qsizetype end = found->indexOf(kEndMark); end >= 0; end = found->indexOf(kEndMark)) {
    const QString text = QString::fromUtf8(found->left(end));
    found->remove(0, end + 1);
    QMetaObject::invokeMethod(
        this, [this, text] { emit commandLineReceived(text); }, Qt::QueuedConnection);
  }
}

}  // namespace zemtra
