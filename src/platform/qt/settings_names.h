// Names of sections and keys as QSettings can hold them.
#pragma once

#include <QString>
#include <string>
#include <string_view>
#include <utility>

namespace kel {

/// The QSettings path of an entry: a part of a section ("Setup\DOS") is a group, the key stands in
/// the last one ("Setup/DOS/TopMargin"). QSettings takes both slashes for separators and knows no
/// bytes, so what it would take amiss inside a name is percent-escaped: every section and key, of
/// any bytes, has a path of its own.
QString SettingsPath(std::string_view section, std::string_view key);

/// Section and key of a path that SettingsPath made. REQUIRES a separator in it.
std::pair<std::string, std::string> SettingsName(const QString& path);

}  // namespace kel
