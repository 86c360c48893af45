// Virtual key codes as Qt's keys.
#pragma once

#include <QString>
#include <Qt>

namespace kel {

/// A key as it is typed on a US keyboard.
struct TypedKey {
  int key = 0;
  Qt::KeyboardModifiers modifiers;
  QString text;  // empty where the key types none, and with Ctrl or Alt
};

/// The key of a published virtual key code; `shift` is 1 for Shift, 2 for Ctrl and 4 for Alt,
/// added together. Throws Error 5 for a code that no key has.
TypedKey TypedKeyOf(int key_code, int shift);

}  // namespace kel
