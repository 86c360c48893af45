// CheckBox, OptionButton, CommandButton, Label, Frame and TabStrip.

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QTabWidget>
#include <array>
#include <cmath>

#include "controls/text_alignment.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

// The published states of a check box.
constexpr int kUnchecked = 0;
constexpr int kChecked = 1;
constexpr int kGrayed = 2;

Value CheckState(Control& control, Indexes /*indexes*/) {
  switch (control.As<QCheckBox>().checkState()) {
    case Qt::Unchecked:
      return kUnchecked;
    case Qt::Checked:
      return kChecked;
    default:
      return kGrayed;
  }
}

// A number of -1 is a True that came through a database.
void SetCheckState(Control& control, const Value& value, Indexes /*indexes*/) {
  auto& box = control.As<QCheckBox>();
  if (value.Kind() == ValueKind::kBoolean) {
    box.setChecked(value.ToBoolean());
    return;
  }
  const int state = std::abs(NumberWithin(value, -kChecked, kGrayed, "Value"));
  if (state == kGrayed) box.setTristate();
  box.setCheckState(state == kGrayed ? Qt::PartiallyChecked
                                     : (state == kChecked ? Qt::Checked : Qt::Unchecked));
}

// Qt keeps one button of a set on while the set is exclusive.
void SetOption(Control& control, const Value& value, Indexes /*indexes*/) {
  auto& option = control.As<QRadioButton>();
  const bool on = value.ToBoolean();
  QButtonGroup* const group = option.group();
  const bool group_is_exclusive = group != nullptr && group->exclusive();
  const bool is_exclusive = option.autoExclusive();
  if (!on) {
    if (group_is_exclusive) group->setExclusive(false);
    option.setAutoExclusive(false);
  }
  option.setChecked(on);
  option.setAutoExclusive(is_exclusive);
  if (group_is_exclusive) group->setExclusive(true);
}

void PressWhenTrue(Control& control, const Value& value, Indexes /*indexes*/) {
  if (value.ToBoolean()) control.As<QAbstractButton>().click();
}

constexpr std::array kCheckBox = {ControlMember{"Value", CheckState, SetCheckState}};

constexpr std::array kOption = {ControlMember{
    "Value", [](Control& c, Indexes) -> Value { return c.As<QRadioButton>().isChecked(); },
    SetOption}};

constexpr std::array kButton = {
    ControlMember{
        "Caption", [](Control& c, Indexes) { return ValueOf(c.As<QAbstractButton>().text()); },
        [](Control& c, const Value& v, Indexes) { c.As<QAbstractButton>().setText(QTextOf(v)); }},
    ControlMember{"Value",
                  [](Control& c, Indexes) -> Value { return c.As<QAbstractButton>().isChecked(); },
                  PressWhenTrue},
};

// A name out of a database is no HTML, whatever it looks like.
void SetLabelCaption(Control& control, const Value& value, Indexes /*indexes*/) {
  auto& label = control.As<QLabel>();
  if (label.textFormat() == Qt::AutoText) label.setTextFormat(Qt::PlainText);
  label.setText(QTextOf(value));
}

constexpr std::array kLabel = {
    ControlMember{"Caption", [](Control& c, Indexes) { return ValueOf(c.As<QLabel>().text()); },
                  SetLabelCaption},
    ControlMember{
        "Alignment", [](Control& c, Indexes) { return AlignmentValue(c.As<QLabel>().alignment()); },
        [](Control& c, const Value& v, Indexes) { c.As<QLabel>().setAlignment(AlignmentOf(v)); }},
};

QGroupBox& CheckableFrame(Control& control) {
  auto& frame = control.As<QGroupBox>();
  if (!frame.isCheckable()) ThrowNoMember(frame.objectName().toStdString(), "Value");
  return frame;
}

constexpr std::array kFrame = {
    ControlMember{
        "Caption", [](Control& c, Indexes) { return ValueOf(c.As<QGroupBox>().title()); },
        [](Control& c, const Value& v, Indexes) { c.As<QGroupBox>().setTitle(QTextOf(v)); }},
    ControlMember{
        "Value", [](Control& c, Indexes) -> Value { return CheckableFrame(c).isChecked(); },
        [](Control& c, const Value& v, Indexes) { CheckableFrame(c).setChecked(v.ToBoolean()); }},
};

QTabWidget& Tabs(Control& control) { return control.As<QTabWidget>(); }

int PageAt(Control& control, Indexes indexes) {
  const int page = IndexAt(indexes, 0);
  if (page < 0 || page >= Tabs(control).count()) {
    throw Error(error_number::kSubscriptOutOfRange, "Subscript out of range: TabCaption");
  }
  return page;
}

constexpr std::array kTabs = {
    ControlMember{"Tab", [](Control& c, Indexes) -> Value { return Tabs(c).currentIndex(); },
                  [](Control& c, const Value& v, Indexes) {
                    Tabs(c).setCurrentIndex(NumberWithin(v, 0, Tabs(c).count() - 1, "Tab"));
                  }},
    ControlMember{"Tabs", [](Control& c, Indexes) -> Value { return Tabs(c).count(); }},
    ControlMember{"TabCaption",
                  [](Control& c, Indexes i) { return ValueOf(Tabs(c).tabText(PageAt(c, i))); },
                  [](Control& c, const Value& v, Indexes i) {
                    Tabs(c).setTabText(PageAt(c, i), QTextOf(v));
                  }},
    ControlMember{
        "Caption",
        [](Control& c, Indexes) { return ValueOf(Tabs(c).tabText(Tabs(c).currentIndex())); },
        [](Control& c, const Value& v, Indexes) {
          Tabs(c).setTabText(Tabs(c).currentIndex(), QTextOf(v));
        }},
};

}  // namespace

ControlMembers CheckBoxMembers() { return kCheckBox; }

ControlMembers OptionMembers() { return kOption; }

ControlMembers ButtonMembers() { return kButton; }

ControlMembers LabelMembers() { return kLabel; }

ControlMembers FrameMembers() { return kFrame; }

ControlMembers TabMembers() { return kTabs; }

}  // namespace kel
