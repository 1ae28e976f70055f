#include "script/ScriptHost.h"

#include <QJSEngine>
#include <QStringList>
#include <thread>

#include "core/Host.h"
#include "core/NumberText.h"
#include "script/ScriptApi.h"
#include "script/ScriptBridge.h"

namespace zemtra {

namespace {

using Clock = std::chrono::steady_clock;

// File name of the generated function definitions; their frames are left out of reports.
constexpr const char* kFunctionsName = "zemtra-functions";
// How often the waiting thread lets the window run and looks for Esc and the time limit.
constexpr std::chrono::milliseconds kPollInterval{50};

// One global function per ZMT function, each handing its arguments to the bridge.
QString FunctionDefinitions() {
  QString text;
  for (std::string_view name : ScriptApi::FunctionNames()) {
    const QString n = QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
    text += QStringLiteral(
                "function %1() { return __zemtra.call(\"%1\", "
                "Array.prototype.slice.call(arguments)); }\n")
                .arg(n);
  }
  return text;
}

// The script's line of the innermost frame of an exception's stack trace that lies in the
// script itself. Frames read "function:line:column:file".
int ScriptLineOf(const QStringList& trace) {
  for (const QString& frame : trace) {
    const QStringList parts = frame.split(QLatin1Char(':'));
    if (parts.size() < 4 || frame.contains(QLatin1String(kFunctionsName))) continue;
    bool ok = false;
    const int line = parts[1].toInt(&ok);
    if (ok && line > 0) return line;
  }
  return 0;
}

// Runs the script in an engine of this thread and describes how it ended.
ScriptOutcome RunInEngine(ScriptChannel& channel, const std::string& source,
                          const std::string& fileName) {
  QJSEngine engine;
  engine.installExtensions(QJSEngine::ConsoleExtension);
  ScriptBridge bridge(channel, engine);
  QJSEngine::setObjectOwnership(&bridge, QJSEngine::CppOwnership);
  engine.globalObject().setProperty(QStringLiteral("__zemtra"), engine.newQObject(&bridge));
  engine.evaluate(FunctionDefinitions(), QString::fromLatin1(kFunctionsName));
  {
    std::lock_guard lock(channel.mutex);
    channel.engine = &engine;
  }
  QStringList trace;
  const QJSValue result =
      engine.evaluate(QString::fromStdString(source), QString::fromStdString(fileName), 1, &trace);
  {
    std::lock_guard lock(channel.mutex);
    channel.engine = nullptr;
  }
  ScriptOutcome outcome;
  if (!result.isError() && trace.isEmpty()) {
    if (!result.isUndefined()) outcome.value = result.toString().toStdString();
    return outcome;
  }
  outcome.kind = ScriptOutcome::Kind::Failed;
  outcome.message = result.toString().toStdString();
  outcome.line = ScriptLineOf(trace);
  if (outcome.line == 0 && result.isError()) {
    outcome.line = result.property(QStringLiteral("lineNumber")).toInt();
  }
  return outcome;
}

}  // namespace

std::string ScriptOutcome::Report() const {
  if (line <= 0) return message;
  return "Line " + FormatNumberText(line, "") + ": " + message;
}

ScriptHost::ScriptHost(ScriptApi& api, Host& host) : api_(api), host_(host) {}

ScriptOutcome ScriptHost::Execute(const std::string& source, const std::string& fileName) {
  if (running_) {
    return {ScriptOutcome::Kind::Refused, 0, "Another script is running", {}};
  }
  running_ = true;
  ScriptChannel channel(api_);
  ScriptOutcome outcome;
  std::thread worker([&] {
    outcome = RunInEngine(channel, source, fileName);
    std::lock_guard lock(channel.mutex);
    channel.finished = true;
    channel.changed.notify_all();
  });

  const Clock::time_point start = Clock::now();
  Clock::time_point lastPoll = start;
  ScriptOutcome::Kind stopReason = ScriptOutcome::Kind::Done;
  std::unique_lock lock(channel.mutex);
  while (!channel.finished) {
    channel.changed.wait_for(lock, kPollInterval,
                             [&] { return channel.finished || channel.callName.has_value(); });
    if (channel.callName) {
      const std::string name = std::move(*channel.callName);
      const std::vector<ScriptValue> args = std::move(channel.callArgs);
      channel.callName.reset();
      channel.answer = api_.Call(name, args);
      channel.changed.notify_all();
    }
    if (channel.finished || Clock::now() - lastPoll < kPollInterval) continue;
    // Let the window run (Esc is read there) and see whether the script must stop.
    host_.pumpEvents();
    lastPoll = Clock::now();
    if (stopReason == ScriptOutcome::Kind::Done) {
      if (host_.abortRequested()) {
        stopReason = ScriptOutcome::Kind::StoppedByUser;
      } else if (timeLimit_.count() > 0 && lastPoll - start >= timeLimit_) {
        stopReason = ScriptOutcome::Kind::TimedOut;
      }
    }
    if (stopReason != ScriptOutcome::Kind::Done && channel.engine != nullptr) {
      channel.engine->setInterrupted(true);
    }
  }
  lock.unlock();
  worker.join();
  running_ = false;

  if (outcome.ok() || stopReason == ScriptOutcome::Kind::Done) return outcome;
  if (stopReason == ScriptOutcome::Kind::StoppedByUser) {
    outcome.kind = stopReason;
    outcome.message = "Script stopped by the user";
  } else {
    outcome.kind = stopReason;
    outcome.message = "Script stopped: it ran longer than " +
                      FormatNumberText(static_cast<double>(timeLimit_.count()) / 1000.0, "") + " s";
  }
  return outcome;
}

}  // namespace zemtra
