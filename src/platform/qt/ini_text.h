// The text of an INI file as QSettings writes and reads it.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace kel {

/// Texts by section and key.
using SettingsMap = std::map<std::pair<std::string, std::string>, std::string>;

/// The settings that an INI text holds. Throws Error 321, naming what is wrong, for a text that is
/// not one that IniText, or a person editing it with care, has written: no part of it is ever
/// dropped in silence.
SettingsMap ParseIni(std::string_view text);

/// The INI text that ParseIni reads back. All bytes are kept, UTF-8 or not.
std::string IniText(const SettingsMap& settings);

}  // namespace kel
