// The line that people type into: a field of its own, or part of a combo box, a spin box or a date.
#pragma once

#include <QAbstractSpinBox>
#include <QLineEdit>
#include <QString>

#include "common/value.h"

namespace kel {

/// Makes room for a text beyond Qt's own limit. Throws Error 380 for one longer than a set
/// MaxLength: nothing is cut silently.
void MakeRoom(QLineEdit& line, const QString& text);
/// The same, and puts the text in.
void SetText(QLineEdit& line, const QString& text);

/// 0: no limit, which Qt's own 32,767 counts as.
int MaxLength(const QLineEdit& line);
void MaxLength(QLineEdit& line, const Value& value);

int SelStart(const QLineEdit& line);
void SelStart(QLineEdit& line, const Value& value);
void SelLength(QLineEdit& line, const Value& value);

/// Types a text into a spin box or date field and takes it over; false, with the field as it was,
/// when it is none of the field's values.
bool EnterText(QAbstractSpinBox& box, const QString& text);

}  // namespace kel
