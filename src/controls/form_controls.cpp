#include "controls/form_controls.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QHash>
#include <QPointer>
#include <QTabBar>
#include <array>
#include <vector>

#include "controls/member_table.h"
#include "controls/widget_members.h"
#include "controls/widget_object.h"

namespace kel {
namespace {

bool IsNamed(const QWidget& widget) {
  const QString name = widget.objectName();
  return !name.isEmpty() && !name.startsWith(QLatin1String("qt_"));
}

// What these are made of is Qt's own.
bool HasInnerParts(const QWidget& widget) {
  return qobject_cast<const QComboBox*>(&widget) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(&widget) != nullptr ||
         qobject_cast<const QAbstractItemView*>(&widget) != nullptr ||
         qobject_cast<const QTabBar*>(&widget) != nullptr;
}

void Collect(const QWidget& parent, std::vector<QPointer<QWidget>>& controls) {
  for (QObject* child : parent.children()) {
    auto* widget = qobject_cast<QWidget*>(child);
    if (widget == nullptr || widget->isWindow()) continue;
    if (IsNamed(*widget)) controls.emplace_back(widget);
    if (!HasInnerParts(*widget)) Collect(*widget, controls);
  }
}

// The controls of a form as they were when it was last looked through.
struct FormControls {
  QPointer<QWidget> form;
  bool is_known = false;
  std::vector<QPointer<QWidget>> controls;
  QHash<QString, QPointer<QWidget>> by_name;  // case-folded
};

using ControlsMember = MemberOf<FormControls>;

QString NameOf(const QWidget& widget) { return widget.objectName().toCaseFolded(); }

void LookThrough(FormControls& controls) {
  controls.controls.clear();
  controls.by_name.clear();
  Collect(*controls.form, controls.controls);
  for (const auto& control : controls.controls) {
    auto& first = controls.by_name[NameOf(*control)];
    if (first == nullptr) first = control;
  }
  controls.is_known = true;
}

// Controls come, go and are renamed while the program runs; then the form is looked through again.
QWidget& ByName(FormControls& controls, const std::string& name) {
  const QString folded = QString::fromStdString(name).toCaseFolded();
  for (const bool again : {false, true}) {
    if (again || !controls.is_known) LookThrough(controls);
    QWidget* const found = controls.by_name.value(folded);
    if (found != nullptr && NameOf(*found) == folded && IsControlOf(*controls.form, *found)) {
      return *found;
    }
  }
  throw Error(control_error::kControlNotFound, "Control '" + name + "' not found");
}

// Count, which a walk over all controls begins with, has looked through the form.
QWidget& ByIndex(FormControls& controls, std::int32_t index) {
  if (!controls.is_known) LookThrough(controls);
  const auto at = static_cast<std::size_t>(index);
  if (index < 0 || at >= controls.controls.size() || controls.controls[at] == nullptr) {
    throw Error(error_number::kSubscriptOutOfRange, "Subscript out of range: Controls");
  }
  return *controls.controls[at];
}

Value Item(FormControls& controls, Indexes indexes) {
  if (!indexes.empty() && indexes[0].Kind() == ValueKind::kString) {
    return WidgetValue(&ByName(controls, indexes[0].String()));
  }
  return WidgetValue(&ByIndex(controls, IndexAt(indexes, 0)));
}

Value Count(FormControls& controls, Indexes /*indexes*/) {
  LookThrough(controls);
  return static_cast<std::int64_t>(controls.controls.size());
}

constexpr std::array kControls = {
    ControlsMember{"Item", Item},
    ControlsMember{"Count", Count},
};

class FormControlsObject : public MemberObject<FormControls> {
 public:
  explicit FormControlsObject(QWidget& form)
      : MemberObject({{kControls}, "Item"}), controls_{&form, false, {}, {}} {}

  std::string TypeName() const override { return "Controls"; }

 protected:
  FormControls& Live() override {
    if (controls_.form == nullptr) throw Error(error_number::kObjectNotSet, "the form is gone");
    return controls_;
  }
  std::string Called() const override { return TypeName(); }

 private:
  FormControls controls_;
};

}  // namespace

std::shared_ptr<Object> ControlsOf(QWidget& form) {
  return std::make_shared<FormControlsObject>(form);
}

bool IsControlOf(const QWidget& form, const QWidget& widget) {
  if (!IsNamed(widget) || widget.isWindow()) return false;
  for (const QWidget* above = widget.parentWidget(); above != nullptr;
       above = above->parentWidget()) {
    if (above == &form) return true;
    if (above->isWindow() || HasInnerParts(*above)) return false;
  }
  return false;
}

}  // namespace kel
