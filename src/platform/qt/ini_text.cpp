#include "platform/qt/ini_text.h"

#include <QFile>
#include <QMetaType>
#include <QSettings>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

#include "common/error.h"
#include "platform/qt/settings_names.h"

namespace kel {
namespace {

[[noreturn]] void ThrowFormat(const std::string& why) {
  throw Error(error_number::kInvalidFileFormat, why);
}

// QSettings knows files only, and keeps in memory what it once read of a path: a format error is
// told once, and a change within the same clock tick goes unseen. So it is given a private file.
class PrivateFile {
 public:
  PrivateFile() {
    if (!folder_.isValid()) Throw(folder_.errorString());
  }

  QString Path() const { return folder_.filePath(QStringLiteral("settings.ini")); }

  void Put(std::string_view text) const {
    QFile file(Path());
    const auto size = static_cast<qint64>(text.size());
    if (!file.open(QIODevice::WriteOnly) || file.write(text.data(), size) != size ||
        !file.flush()) {
      Throw(file.errorString());
    }
  }

  std::string Get() const {
    QFile file(Path());
    if (!file.exists()) return {};  // what QSettings makes of no settings at all
    if (!file.open(QIODevice::ReadOnly)) Throw(file.errorString());
    return file.readAll().toStdString();
  }

  [[noreturn]] static void Throw(const QString& reason) {
    throw Error(error_number::kDeviceIoError,
                "cannot use a work file for the settings: " + reason.toStdString());
  }

 private:
  QTemporaryDir folder_;
};

void CheckCharacters(std::string_view text) {
  const QByteArray bytes(text.data(), static_cast<qsizetype>(text.size()));
  if (bytes.contains('\0')) ThrowFormat("it holds a NUL character");
  if (!bytes.isValidUtf8()) ThrowFormat("it is not UTF-8 text");
}

std::string TextOf(const QVariant& value, const QString& path) {
  if (value.metaType() == QMetaType::fromType<QString>()) return value.toString().toStdString();
  if (value.metaType() == QMetaType::fromType<QByteArray>()) {
    return value.toByteArray().toStdString();
  }
  ThrowFormat("the value of " + path.toStdString() +
              " is not one text (a text with commas or quotes stands between quotes)");
}

QVariant ValueOf(const std::string& text) {
  const QByteArray bytes = QByteArray::fromStdString(text);
  const QString unicode = QString::fromUtf8(bytes);
  return unicode.toUtf8() == bytes ? QVariant(unicode) : QVariant(bytes);
}

bool ReadsBackAs(std::string_view text, const SettingsMap& settings) {
  try {
    return ParseIni(text) == settings;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

SettingsMap ParseIni(std::string_view text) {
  CheckCharacters(text);
  const PrivateFile file;
  file.Put(text);
  const QSettings parser(file.Path(), QSettings::IniFormat);
  const QStringList paths = parser.allKeys();
  if (parser.status() == QSettings::AccessError) PrivateFile::Throw(file.Path());
  if (parser.status() != QSettings::NoError) ThrowFormat("a line is no section and no setting");

  SettingsMap settings;
  for (const QString& path : paths) {
    if (!path.contains(QLatin1Char('/'))) {
      ThrowFormat("the setting " + path.toStdString() + " stands outside all sections");
    }
    settings.insert_or_assign(SettingsName(path), TextOf(parser.value(path), path));
  }
  return settings;
}

std::string IniText(const SettingsMap& settings) {
  const PrivateFile file;
  QSettings writer(file.Path(), QSettings::IniFormat);
  for (const auto& [name, text] : settings) {
    writer.setValue(SettingsPath(name.first, name.second), ValueOf(text));
  }
  writer.sync();
  if (writer.status() != QSettings::NoError) PrivateFile::Throw(file.Path());
  std::string text = file.Get();
  // QSettings takes no notice of a write that a full disk cuts short.
  if (!ReadsBackAs(text, settings)) PrivateFile::Throw(file.Path() + " came out incomplete");
  return text;
}

}  // namespace kel
