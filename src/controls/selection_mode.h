// How many items of a list may be selected.
#pragma once

#include <QAbstractItemView>

#include "common/value.h"

namespace kel {

// Published values of MultiSelect.
inline constexpr int kSingleSelect = 0;
inline constexpr int kSimpleSelect = 1;
inline constexpr int kExtendedSelect = 2;

int MultiSelectOf(const QAbstractItemView& view);
/// Throws Error 380 for any number but the published ones.
void SetMultiSelect(QAbstractItemView& view, const Value& value);

}  // namespace kel
