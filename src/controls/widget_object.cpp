#include "controls/widget_object.h"

#include <string>

#include "common/names.h"
#include "controls/widget_kind.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

class QtWidgetObject : public MemberObject<Control> {
 public:
  explicit QtWidgetObject(QWidget& widget) : MemberObject(MembersOf(widget)), control_(widget) {}

  QWidget* Pointer() const { return control_.Pointer(); }

  std::string TypeName() const override { return TypeNameOf(control_.Widget()); }

  bool IsSame(const Object& other) const override {
    return Pointer() != nullptr && WidgetOf(other) == Pointer();
  }

  bool Implements(std::string_view interface_name) const override {
    return SameName(interface_name, kDatePickerInterface) && IsDatePicker(control_.Widget());
  }

 protected:
  Control& Live() override {
    control_.Widget();
    return control_;
  }

  std::string Called() const override {
    const QWidget& widget = control_.Widget();
    return widget.objectName().isEmpty() ? TypeNameOf(widget) : widget.objectName().toStdString();
  }

 private:
  Control control_;
};

}  // namespace

std::shared_ptr<Object> WidgetObject(QWidget& widget) {
  return std::make_shared<QtWidgetObject>(widget);
}

QWidget* WidgetOf(const Object& object) {
  const auto* adapter = dynamic_cast<const QtWidgetObject*>(&object);
  return adapter == nullptr ? nullptr : adapter->Pointer();
}

}  // namespace kel
