#include "platform/qt/virtual_keys.h"

#include <algorithm>
#include <array>
#include <string>

#include "common/error.h"

namespace kel {
namespace {

constexpr int kShift = 1;
constexpr int kControl = 2;
constexpr int kAlt = 4;

constexpr int kNumpad0 = 96;
constexpr int kNumpadDivide = 111;
constexpr int kF1 = 112;
constexpr int kF24 = 135;

struct NamedKey {
  int code;
  Qt::Key key;
};

constexpr std::array<NamedKey, 22> kNamedKeys = {{
    {8, Qt::Key_Backspace}, {9, Qt::Key_Tab},       {13, Qt::Key_Return},   {16, Qt::Key_Shift},
    {17, Qt::Key_Control},  {18, Qt::Key_Alt},      {19, Qt::Key_Pause},    {20, Qt::Key_CapsLock},
    {27, Qt::Key_Escape},   {33, Qt::Key_PageUp},   {34, Qt::Key_PageDown}, {35, Qt::Key_End},
    {36, Qt::Key_Home},     {37, Qt::Key_Left},     {38, Qt::Key_Up},       {39, Qt::Key_Right},
    {40, Qt::Key_Down},     {44, Qt::Key_Print},    {45, Qt::Key_Insert},   {46, Qt::Key_Delete},
    {93, Qt::Key_Menu},     {144, Qt::Key_NumLock},
}};

// A key that types a character: alone, and with Shift.
struct CharacterKey {
  int code;
  char plain;
  char shifted;
};

constexpr std::array<CharacterKey, 22> kCharacterKeys = {{
    {32, ' ', ' '},  {48, '0', ')'},   {49, '1', '!'},  {50, '2', '@'},  {51, '3', '#'},
    {52, '4', '$'},  {53, '5', '%'},   {54, '6', '^'},  {55, '7', '&'},  {56, '8', '*'},
    {57, '9', '('},  {186, ';', ':'},  {187, '=', '+'}, {188, ',', '<'}, {189, '-', '_'},
    {190, '.', '>'}, {191, '/', '?'},  {192, '`', '~'}, {219, '[', '{'}, {220, '\\', '|'},
    {221, ']', '}'}, {222, '\'', '"'},
}};

// The number pad from 0 to 9 on, up to the division key; 108 is a separator no keyboard has.
constexpr std::string_view kNumpadTexts = "0123456789*+,-./";

// A key for a character has the character's capital letter as its number.
TypedKey Typing(char character) {
  const QChar letter = QLatin1Char(character);
  return {letter.toUpper().unicode(), {}, QString(letter)};
}

TypedKey KeyOf(int code, bool shifted) {
  const auto* const named = std::find_if(kNamedKeys.begin(), kNamedKeys.end(),
                                         [code](const NamedKey& key) { return key.code == code; });
  if (named != kNamedKeys.end()) {
    if (named->key == Qt::Key_Tab && shifted) return {Qt::Key_Backtab, {}, {}};
    const bool types = code == 8 || code == 9 || code == 13 || code == 27;
    return {named->key, {}, types ? QString(QChar(code)) : QString()};
  }
  if (code >= 'A' && code <= 'Z') {
    return Typing(static_cast<char>(shifted ? code : code - 'A' + 'a'));
  }
  if (code >= kF1 && code <= kF24) return {Qt::Key_F1 + code - kF1, {}, {}};
  if (code >= kNumpad0 && code <= kNumpadDivide) {
    TypedKey key = Typing(kNumpadTexts[static_cast<std::size_t>(code - kNumpad0)]);
    key.modifiers = Qt::KeypadModifier;
    return key;
  }
  const auto* const types =
      std::find_if(kCharacterKeys.begin(), kCharacterKeys.end(),
                   [code](const CharacterKey& key) { return key.code == code; });
  if (types != kCharacterKeys.end()) return Typing(shifted ? types->shifted : types->plain);
  throw Error(error_number::kInvalidProcedureCall, "No key has the code " + std::to_string(code));
}

}  // namespace

TypedKey TypedKeyOf(int key_code, int shift) {
  TypedKey key = KeyOf(key_code, (shift & kShift) != 0);
  if ((shift & kShift) != 0) key.modifiers |= Qt::ShiftModifier;
  if ((shift & kControl) != 0) key.modifiers |= Qt::ControlModifier;
  if ((shift & kAlt) != 0) key.modifiers |= Qt::AltModifier;
  if ((shift & (kControl | kAlt)) != 0) key.text.clear();
  return key;
}

}  // namespace kel
