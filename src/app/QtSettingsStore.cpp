#include "app/QtSettingsStore.h"

#include <QSettings>
#include <algorithm>

namespace zemtra {

namespace {

QString Path(const std::string& section, const std::string& key) {
  return QString::fromStdString(section) + '/' + QString::fromStdString(key);
}

// A value read back as text whatever QSettings made of it (an INI value with a comma reads as
// a list).
std::string ValueText(const QVariant& value) {
  if (value.metaType().id() == QMetaType::QStringList) {
    return value.toStringList().join(", ").toStdString();
  }
  return value.toString().toStdString();
}

}  // namespace

// The native format of this platform is the INI text in ~/.config/Zemtra/Zemtra.conf, the file
// the command-line tool reads.
QtSettingsStore::QtSettingsStore()
    : settings_(std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, "Zemtra",
                                            "Zemtra")) {}

QtSettingsStore::QtSettingsStore(const QString& fileName)
    : settings_(std::make_unique<QSettings>(fileName, QSettings::IniFormat)) {}

QtSettingsStore::~QtSettingsStore() = default;

std::string QtSettingsStore::GetSetting(const std::string& section, const std::string& key,
                                        const std::string& fallback) const {
  const QVariant value = settings_->value(Path(section, key));
  if (!value.isValid()) return fallback;
  return ValueText(value);
}

void QtSettingsStore::SaveSetting(const std::string& section, const std::string& key,
                                  const std::string& value) {
  settings_->setValue(Path(section, key), QString::fromStdString(value));
}

void QtSettingsStore::DeleteSetting(const std::string& section) {
  settings_->remove(QString::fromStdString(section));
}

std::vector<std::pair<std::string, std::string>> QtSettingsStore::GetAllSettings(
    const std::string& section) const {
  std::vector<std::pair<std::string, std::string>> pairs;
  settings_->beginGroup(QString::fromStdString(section));
  for (const QString& key : settings_->childKeys()) {
    pairs.emplace_back(key.toStdString(), ValueText(settings_->value(key)));
  }
  settings_->endGroup();
  std::sort(pairs.begin(), pairs.end());
  return pairs;
}

bool QtSettingsStore::Sync() {
  settings_->sync();
  return settings_->status() == QSettings::NoError;
}

QString QtSettingsStore::FileName() const {
  return settings_->fileName();
}

}  // namespace zemtra
