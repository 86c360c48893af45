// DTPicker: dates, times of day and both.

#include <QDateTimeEdit>
#include <QTimeEdit>
#include <array>

#include "common/date_text.h"
#include "controls/empty_date_entry.h"
#include "controls/line_text.h"
#include "controls/qt_date.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

// The property of a picker that may be without a date.
constexpr const char* kCheckBoxProperty = "kelCheckBox";
constexpr int kMayNotBeEmpty = 35787;

// The years that every date may have, where Qt's own limit begins with the Gregorian calendar.
const DayAndTime kFirstMoment = {QDate(100, 1, 1), QTime(0, 0)};
const QDate kQtFirstDay(1752, 9, 14);

QDateTimeEdit& Picker(Control& control) { return control.As<QDateTimeEdit>(); }

bool HasTimeOnly(const QDateTimeEdit& picker) {
  return qobject_cast<const QTimeEdit*>(&picker) != nullptr;
}

bool HasTime(const QDateTimeEdit& picker) {
  return (picker.displayedSections() & QDateTimeEdit::TimeSections_Mask) != 0;
}

DayAndTime MomentOf(const QDateTimeEdit& picker) { return {picker.date(), picker.time()}; }

bool MayBeEmpty(const QDateTimeEdit& picker) { return picker.property(kCheckBoxProperty).toBool(); }

bool IsEmpty(const QDateTimeEdit& picker) { return MayBeEmpty(picker) && IsEmptyDate(picker); }

void WidenTo(QDateTimeEdit& picker, const QDate& day) {
  if (day < kQtFirstDay && picker.minimumDate() == kQtFirstDay) {
    const bool empty = IsEmpty(picker);
    picker.setMinimumDate(kFirstMoment.day);
    if (empty) picker.setDateTime(picker.minimumDateTime());
  }
}

// Day and time one by one: as one moment of the local time zone, those in the hour that is left out
// in spring would be moved.
void SetMoment(QDateTimeEdit& picker, const DayAndTime& moment) {
  WidenTo(picker, moment.day);
  const DayAndTime before = MomentOf(picker);
  if (!HasTimeOnly(picker)) picker.setDate(moment.day);
  picker.setTime(moment.time);
  const bool has_day = HasTimeOnly(picker) || picker.date() == moment.day;
  // Where the clocks go forward at midnight, a day begins later than 0:00.
  const bool has_time = !HasTime(picker) || picker.time() == moment.time;
  if (has_day && has_time && !IsEmpty(picker)) return;
  picker.setDate(before.day);
  picker.setTime(before.time);
  ThrowInvalidValue("Value is not between MinDate and MaxDate, or no time of that day");
}

Date DateOfValue(const Value& value) {
  if (value.Kind() == ValueKind::kString) {
    if (const auto date = ReadDate(value.String(), DateOrder::kDayFirst)) return *date;
    throw Error(error_number::kTypeMismatch, "not a date: " + value.String());
  }
  if (value.Kind() == ValueKind::kBoolean) {
    throw Error(error_number::kTypeMismatch, "not a date: " + value.ToText());
  }
  return {value.ToDouble()};
}

// Empty, which a Null of a database becomes on its way, is no day in 1899.
bool IsNoDate(const QDateTimeEdit& picker, const Value& value) {
  return value.IsNull() || value.IsEmpty() || (MayBeEmpty(picker) && value == Value(""));
}

Value PickedValue(Control& control, Indexes /*indexes*/) {
  const QDateTimeEdit& picker = Picker(control);
  if (IsEmpty(picker)) return Value::Null();
  const DayAndTime moment = MomentOf(picker);
  if (!HasTimeOnly(picker)) return DateOf(moment);
  return DateOf(DayAndTime{DayAndTimeOf({}).day, moment.time});
}

void SetPickedValue(Control& control, const Value& value, Indexes /*indexes*/) {
  QDateTimeEdit& picker = Picker(control);
  if (!IsNoDate(picker, value)) {
    SetMoment(picker, DayAndTimeOf(DateOfValue(value)));
    return;
  }
  if (!MayBeEmpty(picker)) {
    throw Error(kMayNotBeEmpty, "a picker without CheckBox cannot be set to Null");
  }
  picker.setDateTime(picker.minimumDateTime());
}

void SetCheckBox(Control& control, const Value& value, Indexes /*indexes*/) {
  QDateTimeEdit& picker = Picker(control);
  const bool on = value.ToBoolean();
  if (on == MayBeEmpty(picker)) return;
  picker.setProperty(kCheckBoxProperty, on);
  picker.setSpecialValueText(on ? ShownWhenEmpty() : QString());
  // It stays with the picker, and does nothing while there is a date.
  if (on) picker.installEventFilter(new EmptyDateEntry(picker));
}

// As the picker shows it, else any text that states a date.
void SetShownText(Control& control, const Value& value, Indexes indexes) {
  if (IsNoDate(Picker(control), value) || !EnterText(Picker(control), QTextOf(value))) {
    SetPickedValue(control, value, indexes);
  }
}

template <int (QDate::*Part)() const>
Value DatePart(Control& control, Indexes /*indexes*/) {
  if (IsEmpty(Picker(control))) return Value::Null();
  return (Picker(control).date().*Part)();
}

enum class Part { kYear, kMonth, kDay };

template <Part Which>
void SetDatePart(Control& control, const Value& value, Indexes /*indexes*/) {
  QDateTimeEdit& picker = Picker(control);
  const int number = value.ToInt32();
  const DayAndTime now = MomentOf(picker);
  const QDate day(Which == Part::kYear ? number : now.day.year(),
                  Which == Part::kMonth ? number : now.day.month(),
                  Which == Part::kDay ? number : now.day.day());
  if (!day.isValid() || IsEmpty(picker)) ThrowInvalidValue("a date that there is not");
  SetMoment(picker, {day, now.time});
}

void SetMinDate(Control& control, const Value& value, Indexes /*indexes*/) {
  QDateTimeEdit& picker = Picker(control);
  const bool empty = IsEmpty(picker);
  picker.setMinimumDate(DayAndTimeOf(DateOfValue(value)).day);
  if (empty) picker.setDateTime(picker.minimumDateTime());
}

constexpr std::array kDatePicker = {
    ControlMember{"Value", PickedValue, SetPickedValue},
    ControlMember{"Text", [](Control& c, Indexes) { return ValueOf(Picker(c).text()); },
                  SetShownText},
    ControlMember{"CheckBox", [](Control& c, Indexes) -> Value { return MayBeEmpty(Picker(c)); },
                  SetCheckBox},
    ControlMember{"MinDate",
                  [](Control& c, Indexes) -> Value {
                    return DateOf(DayAndTime{Picker(c).minimumDate(), QTime(0, 0)});
                  },
                  SetMinDate},
    ControlMember{"MaxDate",
                  [](Control& c, Indexes) -> Value {
                    return DateOf(DayAndTime{Picker(c).maximumDate(), QTime(0, 0)});
                  },
                  [](Control& c, const Value& v, Indexes) {
                    Picker(c).setMaximumDate(DayAndTimeOf(DateOfValue(v)).day);
                  }},
    ControlMember{"Year", DatePart<&QDate::year>, SetDatePart<Part::kYear>},
    ControlMember{"Month", DatePart<&QDate::month>, SetDatePart<Part::kMonth>},
    ControlMember{"Day", DatePart<&QDate::day>, SetDatePart<Part::kDay>},
    ControlMember{
        "CustomFormat", [](Control& c, Indexes) { return ValueOf(Picker(c).displayFormat()); },
        [](Control& c, const Value& v, Indexes) { Picker(c).setDisplayFormat(QTextOf(v)); }},
    ControlMember{
        "Locked", [](Control& c, Indexes) -> Value { return Picker(c).isReadOnly(); },
        [](Control& c, const Value& v, Indexes) { Picker(c).setReadOnly(v.ToBoolean()); }},
};

}  // namespace

ControlMembers DatePickerMembers() { return kDatePicker; }

}  // namespace kel
