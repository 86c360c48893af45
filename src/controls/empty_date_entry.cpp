#include "controls/empty_date_entry.h"

#include <QCalendarWidget>
#include <QKeyEvent>

namespace kel {
namespace {

bool Steps(const QKeyEvent& key) { return key.key() == Qt::Key_Up || key.key() == Qt::Key_Down; }

bool IsDigit(const QKeyEvent& key) { return !key.text().isEmpty() && key.text().at(0).isDigit(); }

}  // namespace

// Without any text Qt would show the first moment as a date.
QString ShownWhenEmpty() { return QStringLiteral(" "); }

bool IsEmptyDate(const QDateTimeEdit& picker) {
  return picker.specialValueText() == ShownWhenEmpty() &&
         picker.dateTime() == picker.minimumDateTime();
}

EmptyDateEntry::EmptyDateEntry(QDateTimeEdit& picker) : QObject(&picker), picker_(picker) {
  if (QCalendarWidget* calendar = picker.calendarWidget()) calendar->installEventFilter(this);
}

bool EmptyDateEntry::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &picker_ && event->type() == QEvent::Show && IsEmptyDate(picker_)) {
    static_cast<QCalendarWidget*>(watched)->setCurrentPage(QDate::currentDate().year(),
                                                           QDate::currentDate().month());
  }
  if (watched != &picker_ || event->type() != QEvent::KeyPress || picker_.isReadOnly() ||
      !IsEmptyDate(picker_)) {
    return false;
  }
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (!IsDigit(key) && !Steps(key)) return false;
  const bool has_time = (picker_.displayedSections() & QDateTimeEdit::TimeSections_Mask) != 0;
  picker_.setDate(QDate::currentDate());
  picker_.setTime(has_time ? QTime::currentTime() : QTime(0, 0));
  picker_.setSelectedSection(picker_.sectionAt(0));
  return Steps(key);
}

}  // namespace kel
