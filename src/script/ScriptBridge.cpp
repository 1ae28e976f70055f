#include "script/ScriptBridge.h"

#include <QJSEngine>
#include <utility>

namespace zemtra {

namespace {

ScriptValue FromScript(const QJSValue& value) {
  if (value.isUndefined() || value.isNull()) return {};
  if (value.isBool()) return ScriptValue::Boolean(value.toBool());
  if (value.isNumber()) return ScriptValue::Number(value.toNumber());
  return ScriptValue::Text(value.toString().toStdString());
}

QJSValue ToScript(const ScriptValue& value) {
  switch (value.GetKind()) {
    case ScriptValue::Kind::Number:
      return QJSValue(value.AsNumber());
    case ScriptValue::Kind::Text:
      return QJSValue(QString::fromStdString(value.AsText()));
    case ScriptValue::Kind::Boolean:
      return QJSValue(value.AsBoolean());
    default:
      return QJSValue();
  }
}

}  // namespace

QJSValue ScriptBridge::call(const QString& name, const QJSValue& args) {
  std::vector<ScriptValue> values;
  const int count = args.property(QStringLiteral("length")).toInt();
  for (int i = 0; i < count; ++i) values.push_back(FromScript(args.property(i)));
  ScriptCallResult result;
  const std::string function = name.toStdString();
  // Every so often a read goes to the program's thread as well, so that it gets its turn to
  // let the window run and to stop the script.
  if (ScriptApi::ReadsOnly(function) && ++directReads_ % kReadsPerHandOver != 0) {
    std::lock_guard lock(channel_.mutex);
    result = channel_.api.Call(function, values);
  } else {
    std::unique_lock lock(channel_.mutex);
    channel_.callName = function;
    channel_.callArgs = std::move(values);
    channel_.changed.notify_all();
    channel_.changed.wait(lock, [this] { return channel_.answer.has_value(); });
    result = std::move(*channel_.answer);
    channel_.answer.reset();
  }
  if (!result.error.empty()) {
    engine_.throwError(QString::fromStdString(result.error));
    return QJSValue();
  }
  return ToScript(result.value);
}

}  // namespace zemtra
