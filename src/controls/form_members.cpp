// Form, and whatever else other controls are put into.

#include <QDialog>
#include <array>

#include "controls/form_controls.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

// The collection is kept, so that Controls(name) finds what it has found before.
Value Controls(Control& control, Indexes indexes) {
  if (control.collection == nullptr) control.collection = ControlsOf(control.Widget());
  if (indexes.empty()) return control.collection;
  return control.collection->Get(Object::kDefaultMember, indexes);
}

// The control that the focus is in, be it in a part of it.
Value ActiveControl(Control& control, Indexes /*indexes*/) {
  QWidget& form = control.Widget();
  QWidget* focus = form.focusWidget();
  while (focus != nullptr && focus != &form && !IsControlOf(form, *focus)) {
    focus = focus->parentWidget();
  }
  return WidgetValue(focus == &form ? nullptr : focus);
}

Value Show(Control& control, Arguments& arguments) {
  constexpr int kModal = 1;
  const Value& style = ArgumentAt(arguments, 0, "Modal");
  if (style.IsMissing() || NumberWithin(style, 0, kModal, "Show") == 0) {
    control.Widget().show();
    return {};
  }
  auto* const dialog = qobject_cast<QDialog*>(&control.Widget());
  if (dialog == nullptr) ThrowRefused("only a dialog can be shown modal");
  dialog->exec();
  return {};
}

constexpr std::array kForm = {
    ControlMember{
        "Caption", [](Control& c, Indexes) { return ValueOf(c.Widget().windowTitle()); },
        [](Control& c, const Value& v, Indexes) { c.Widget().setWindowTitle(QTextOf(v)); }},
    ControlMember{"Show", nullptr, nullptr, Show},
    ControlMember{"Hide", nullptr, nullptr,
                  [](Control& c, Arguments&) -> Value {
                    c.Widget().hide();
                    return {};
                  }},
    ControlMember{"Unload", nullptr, nullptr,
                  [](Control& c, Arguments&) -> Value {
                    c.Widget().close();
                    return {};
                  }},
};

constexpr std::array kContainer = {
    ControlMember{"Controls", Controls},
    ControlMember{"ActiveControl", ActiveControl},
};

}  // namespace

ControlMembers FormMembers() { return kForm; }

ControlMembers ContainerMembers() { return kContainer; }

}  // namespace kel
