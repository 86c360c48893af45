// Entering a date where there is none yet.
#pragma once

#include <QDateTimeEdit>
#include <QEvent>
#include <QObject>

namespace kel {

/// Shown by a picker, at its first moment, in place of a date.
QString ShownWhenEmpty();

/// True for a picker that shows no date.
bool IsEmptyDate(const QDateTimeEdit& picker);

/// Lets people type into an empty picker, which Qt keeps blank whatever is typed: the first digit,
/// and the keys that step, begin with today. Its calendar opens at the current month. The picker
/// owns it and has it as its event filter.
class EmptyDateEntry : public QObject {
 public:
  explicit EmptyDateEntry(QDateTimeEdit& picker);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QDateTimeEdit& picker_;  // the parent
};

}  // namespace kel
