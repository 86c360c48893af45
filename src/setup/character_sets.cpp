#include "setup/character_sets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "common/number_text.h"
#include "common/numeric_value.h"
#include "engine/print_files.h"

namespace kel {
namespace {

constexpr double kCodesEnd = 256;  // a code is one byte

// ESC/P: ESC P, ESC M and ESC g select a pitch, SI condenses.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kSeedSets = {
    {{"10 cpi", "80"}, {"12 cpi", "77"}, {"15 cpi", "103"}, {"17 cpi", "15"}}};

std::vector<CharacterSet> StoredSets(SettingsStore& store) {
  std::vector<CharacterSet> sets;
  for (auto& [name, code] : store.ReadSection(kCharactersSection)) {
    sets.push_back({std::move(name), std::move(code)});
  }
  // As texts "5 cpi" would stand behind "17 cpi".
  std::stable_sort(sets.begin(), sets.end(), [](const CharacterSet& a, const CharacterSet& b) {
    return ExVal(a.name) < ExVal(b.name);
  });
  return sets;
}

}  // namespace

std::vector<CharacterSet> ListCharacterSets(SettingsStore& store) {
  std::vector<CharacterSet> sets = StoredSets(store);
  if (!sets.empty()) return sets;
  for (const auto& [name, code] : kSeedSets) {
    store.Write(kCharactersSection, name, code);
    sets.push_back({std::string(name), std::string(code)});
  }
  return sets;
}

std::string CharacterSetName(std::string_view pitch) { return NumberText(ExVal(pitch)) + " cpi"; }

std::optional<CharacterSetFault> AddCharacterSet(SettingsStore& store, std::string_view pitch,
                                                 std::string_view code) {
  if (!(ExVal(pitch) > 0)) {
    return CharacterSetFault{"Invalid characters per inch.", CharacterSetField::kPitch};
  }
  const double number = std::nearbyint(ExVal(code));
  if (!(number > 0 && number < kCodesEnd)) {
    return CharacterSetFault{"Invalid decimal codes", CharacterSetField::kCode};
  }
  store.Write(kCharactersSection, CharacterSetName(pitch), NumberText(number));
  return std::nullopt;
}

void DeleteCharacterSet(SettingsStore& store, std::string_view name) {
  store.Delete(kCharactersSection, name);
}

}  // namespace kel
