#pragma once
// The one object a script engine sees: every ZMT function of the script calls `call`, which
// hands the call to the thread that owns the program and waits for its answer. Internal to
// ScriptHost.
#include <QJSValue>
#include <QObject>
#include <QString>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "script/ScriptApi.h"

class QJSEngine;

namespace zemtra {

// What the script's thread and the program's thread share while a script runs. The program's
// thread holds `mutex` whenever it is not waiting for a call, so a function that only reads
// may run on the script's thread under it.
struct ScriptChannel {
  explicit ScriptChannel(ScriptApi& functions) : api(functions) {}
  ScriptApi& api;
  std::mutex mutex;
  std::condition_variable changed;
  // A call waiting to be served, and its answer.
  std::optional<std::string> callName;
  std::vector<ScriptValue> callArgs;
  std::optional<ScriptCallResult> answer;
  QJSEngine* engine = nullptr;  // set while the engine exists
  bool finished = false;        // the script's thread is done
};

class ScriptBridge : public QObject {
  Q_OBJECT
 public:
  ScriptBridge(ScriptChannel& channel, QJSEngine& engine) : channel_(channel), engine_(engine) {}

  // Runs ZMT function `name` with the array `args` on the program's thread.
  Q_INVOKABLE QJSValue call(const QString& name, const QJSValue& args);

 private:
  static constexpr unsigned kReadsPerHandOver = 64;

  ScriptChannel& channel_;
  QJSEngine& engine_;
  unsigned directReads_ = 0;
};

}  // namespace zemtra
