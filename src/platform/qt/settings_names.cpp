#include "platform/qt/settings_names.h"

#include <QByteArray>
#include <QStringList>

namespace kel {
namespace {

constexpr char kSectionSeparator = '\\';
constexpr char kGroupSeparator = '/';
constexpr char kEscape = '%';
constexpr const char* kEmptyName = "%";  // which no escaped name is
constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7f;
constexpr int kHexadecimal = 16;

bool SurvivesUnicode(const QByteArray& name) { return QString::fromUtf8(name).toUtf8() == name; }

bool IsSpecial(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return c == kEscape || c == kGroupSeparator || c == kSectionSeparator || byte < kFirstPrintable ||
         byte == kDelete;
}

QString Escaped(char c) {
  return QLatin1Char(kEscape) + QString::fromLatin1(QByteArray(1, c).toHex().toUpper());
}

QString EscapedName(const QByteArray& name) {
  if (name.isEmpty()) return kEmptyName;
  // QSettings has a group of this name of its own, in any case of letters.
  if (name.compare("General", Qt::CaseInsensitive) == 0) {
    return Escaped(name.front()) + QString::fromUtf8(name.mid(1));
  }
  const bool ascii_only = !SurvivesUnicode(name);
  QByteArray escaped;
  for (const char c : name) {
    if (IsSpecial(c) || (ascii_only && static_cast<unsigned char>(c) > kDelete)) {
      escaped += Escaped(c).toLatin1();
    } else {
      escaped += c;
    }
  }
  return QString::fromUtf8(escaped);
}

// A sign of escape without two hexadecimal digits stands for itself.
QByteArray PlainName(const QString& name) {
  if (name == kEmptyName) return {};
  const QByteArray escaped = name.toUtf8();
  QByteArray plain;
  for (qsizetype i = 0; i < escaped.size(); ++i) {
    bool is_hex = false;
    const uint byte =
        escaped.at(i) == kEscape ? escaped.mid(i + 1, 2).toUInt(&is_hex, kHexadecimal) : 0;
    if (is_hex && i + 2 < escaped.size()) {
      plain += static_cast<char>(byte);
      i += 2;
    } else {
      plain += escaped.at(i);
    }
  }
  return plain;
}

QByteArray Bytes(std::string_view text) {
  return {text.data(), static_cast<qsizetype>(text.size())};
}

}  // namespace

QString SettingsPath(std::string_view section, std::string_view key) {
  QStringList names;
  for (const QByteArray& part : Bytes(section).split(kSectionSeparator)) {
    names += EscapedName(part);
  }
  names += EscapedName(Bytes(key));
  return names.join(QLatin1Char(kGroupSeparator));
}

std::pair<std::string, std::string> SettingsName(const QString& path) {
  QStringList names = path.split(QLatin1Char(kGroupSeparator));
  const std::string key = PlainName(names.takeLast()).toStdString();
  QByteArrayList parts;
  for (const QString& name : names) parts += PlainName(name);
  return {parts.join(kSectionSeparator).toStdString(), key};
}

}  // namespace kel
