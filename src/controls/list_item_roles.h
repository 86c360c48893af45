// Where the items of a list view keep what Qt has no place for.
#pragma once

#include <Qt>

namespace kel {

// Far from Qt::UserRole itself, which programs use.
inline constexpr int kListKeyRole = Qt::UserRole + 0x4B00;
inline constexpr int kListTagRole = Qt::UserRole + 0x4B01;

}  // namespace kel
