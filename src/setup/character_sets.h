// The named character sets of text-mode printing.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/settings_store.h"

namespace kel {

/// A pitch by its name, "10 cpi", and the decimal code that follows ESC to select it.
struct CharacterSet {
  std::string name;
  std::string code;
  bool operator==(const CharacterSet&) const = default;
};

/// The stored sets, wide characters first. When there are none, the four usual ones are stored and
/// listed. Throws Error when the store cannot be read or written.
std::vector<CharacterSet> ListCharacterSets(SettingsStore& store);

/// The name of the set of so many characters per inch, typed as "12" or "12 cpi".
std::string CharacterSetName(std::string_view pitch);

enum class CharacterSetField { kPitch, kCode };

/// What is wrong with what was typed, and where.
struct CharacterSetFault {
  std::string message;
  CharacterSetField field;
};

/// Stores the set of a typed pitch and decimal code, both read with the tolerant numeric
/// conversion; a code's fraction is rounded half to even. A set of that pitch is replaced. Throws
/// Error when the store cannot be written.
std::optional<CharacterSetFault> AddCharacterSet(SettingsStore& store, std::string_view pitch,
                                                 std::string_view code);

/// Nothing happens when there is no such set.
void DeleteCharacterSet(SettingsStore& store, std::string_view name);

}  // namespace kel
