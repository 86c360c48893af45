// The members that each kind of widget offers under the names of the published controls.
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <span>

#include "controls/member_table.h"

namespace kel {

/// The widget that members work on.
class Control {
 public:
  explicit Control(QWidget& widget) : widget_(&widget) {}

  QWidget* Pointer() const { return widget_; }

  /// Throws Error 91 when the widget is gone.
  QWidget& Widget() const {
    if (widget_ == nullptr) throw Error(error_number::kObjectNotSet, "the control is gone");
    return *widget_;
  }
  template <typename Kind>
  Kind& As() const {
    return static_cast<Kind&>(Widget());
  }

  /// The collection that the control handed out, kept for what it has looked up.
  std::shared_ptr<Object> collection;

 private:
  QPointer<QWidget> widget_;
};

using ControlMember = MemberOf<Control>;
using ControlMembers = std::span<const ControlMember>;

/// A member with an object as its value: Nothing when there is no widget.
Value WidgetValue(QWidget* widget);

ControlMembers CommonMembers();
ControlMembers LineEditMembers();
ControlMembers TextEditMembers();
ControlMembers SpinBoxMembers();
ControlMembers RangeMembers();
ControlMembers ItemMembers();
ControlMembers ComboMembers();
ControlMembers ListBoxMembers();
ControlMembers ListViewMembers();
ControlMembers GridMembers();
ControlMembers GridCellMembers();
ControlMembers CheckBoxMembers();
ControlMembers OptionMembers();
ControlMembers ButtonMembers();
ControlMembers LabelMembers();
ControlMembers FrameMembers();
ControlMembers TabMembers();
ControlMembers DatePickerMembers();
ControlMembers ContainerMembers();
ControlMembers FormMembers();

}  // namespace kel
