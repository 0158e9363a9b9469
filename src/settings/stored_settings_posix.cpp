#include <QSettings>
#include <QStringList>
#include <algorithm>

#include <quillmate/settings/settings_store.h>
#include <quillmate/text/operations.h>

#include "key_names_p.h"

namespace quillmate::settings {
namespace {

QString Wide(std::string_view utf8) { return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())); }

/// Both slashes separate the steps of a key path.
QString NameStep(std::string_view name) { return Wide(EncodeName(name, "/\\")); }

QString NamePath(std::string_view section) { return NameStep(section); }
QString NamePath(std::string_view section, std::string_view key) {
  return NamePath(section) + QLatin1Char('/') + NameStep(key);
}

class StoredSettings final : public SettingsStore {
 public:
  StoredSettings(const QString& organization, const QString& application)
      : settings_(QSettings::IniFormat, QSettings::UserScope, organization, application) {
    settings_.setFallbacksEnabled(false);
  }
  explicit StoredSettings(const QString& file) : settings_(file, QSettings::IniFormat) {}

  std::string ReadSetting(std::string_view section, std::string_view key) const override {
    settings_.sync();
    const QVariant value = settings_.value(NamePath(section, key));
    const bool list = value.metaType().id() == QMetaType::QStringList;
    return (list ? value.toStringList().join(QLatin1Char(',')) : value.toString()).toStdString();
  }

  void WriteSetting(std::string_view section, std::string_view key, std::string_view value) override {
    settings_.setValue(NamePath(section, key), Wide(value));
  }

  void RemoveSettingSection(std::string_view section) override {
    // Keys that another instance has stored go too.
    settings_.sync();
    settings_.remove(NamePath(section));
  }

  std::vector<std::string> SettingKeys(std::string_view section) const override {
    settings_.sync();
    settings_.beginGroup(NamePath(section));
    std::vector<std::string> keys;
    for (const QString& key : settings_.childKeys()) keys.push_back(DecodeName(key.toStdString()));
    settings_.endGroup();
    std::sort(keys.begin(), keys.end(), KeyBefore);
    return keys;
  }

 private:
  // Reading takes over what other instances stored meanwhile, and listing sets the group.
  mutable QSettings settings_;
};

}  // namespace

std::unique_ptr<SettingsStore> OpenSettings(const std::string& settingsRoot) {
  return std::make_unique<StoredSettings>(Wide(text::TextBefore(settingsRoot, "\\")),
                                          Wide(text::TextAfterLast(settingsRoot, "\\")));
}

std::unique_ptr<SettingsStore> OpenSettingsFile(const std::filesystem::path& file) {
  return std::make_unique<StoredSettings>(QString::fromStdU16String(file.u16string()));
}

}  // namespace quillmate::settings
