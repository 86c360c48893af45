// The published numbers of alignments.
#pragma once

#include <QVariant>
#include <Qt>

#include "common/value.h"

namespace kel {

/// Of fields and labels: 0 left, 1 right, 2 centre.
Value AlignmentValue(Qt::Alignment alignment);
/// Centred vertically. Throws Error 380 for other numbers.
Qt::Alignment AlignmentOf(const Value& value);

/// Of grid cells: 0 to 2 left, 3 to 5 centre, 6 to 8 right; within each top, centre, bottom.
/// What says nothing is kAlignLeft.
int CellAlignmentNumber(const QVariant& alignment);
/// No alignment for 9, by which a grid decides itself. Throws Error 380 for other numbers.
QVariant CellAlignmentOf(const Value& value);

}  // namespace kel
