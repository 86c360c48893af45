#include "controls/widget_object.h"

#include <QLatin1String>
#include <QPointer>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "common/error.h"
#include "common/names.h"
#include "common/twips.h"
#include "controls/colors.h"
#include "controls/widget_kind.h"

namespace kel {
namespace {

// The default member has the id 0, so the named ones begin after it.
enum MemberName : Object::MemberId {
  kName = 1,
  kTag,
  kCaption,
  kText,
  kParent,
  kSetFocus,
  kHWnd,
  kLeft,
  kTop,
  kWidth,
  kHeight,
  kVisible,
  kEnabled,
  kBackColor,
  kForeColor
};

constexpr std::array<std::string_view, kForeColor> kMemberNames = {
    "Name", "Tag",   "Caption", "Text",    "Parent",  "SetFocus",  "hWnd",     "Left",
    "Top",  "Width", "Height",  "Visible", "Enabled", "BackColor", "ForeColor"};

[[noreturn]] void ThrowNoMember(const QWidget& widget, std::string_view member) {
  throw Error(error_number::kNoSuchMember,
              widget.objectName().toStdString() + " has no member " + std::string(member));
}

class QtWidgetObject : public Object {
 public:
  explicit QtWidgetObject(QWidget& widget) : widget_(&widget) {}

  QWidget* Pointer() const { return widget_; }

  std::string TypeName() const override { return TypeNameOf(Widget()); }

  MemberId Resolve(std::string_view name) override {
    const QWidget& widget = Widget();
    for (std::size_t i = 0; i < kMemberNames.size(); ++i) {
      const auto member = static_cast<MemberId>(i + 1);
      if (SameName(kMemberNames.at(i), name) && HasMember(member)) return member;
    }
    ThrowNoMember(widget, name);
  }

  Value Get(MemberId member, std::span<const Value> indexes) override;
  void Put(MemberId member, const Value& value, std::span<const Value> indexes) override;

  Value Call(MemberId member, Arguments& /*arguments*/) override {
    if (member != kSetFocus) return Get(member, {});
    QWidget& widget = Widget();
    if (!widget.isEnabled() || !widget.isVisible()) {
      throw Error(error_number::kInvalidProcedureCall,
                  widget.objectName().toStdString() + " cannot take the focus");
    }
    widget.activateWindow();
    widget.setFocus(Qt::OtherFocusReason);
    return {};
  }

  bool IsSame(const Object& other) const override {
    return widget_ != nullptr && WidgetOf(other) == widget_;
  }

 private:
  QWidget& Widget() const {
    if (widget_ == nullptr) throw Error(error_number::kObjectNotSet, "the control is gone");
    return *widget_;
  }

  MemberId DefaultMember() const { return IsTextField(Widget()) ? kText : kCaption; }

  bool HasMember(MemberId member) const {
    if (member != kText && member != kCaption) return true;
    return member == DefaultMember() && HasWidgetText(Widget());
  }

  // The member behind an id, with the default member told by its name.
  MemberId Named(MemberId member) const {
    const MemberId named = member == kDefaultMember ? DefaultMember() : member;
    if (named < kName || named > kForeColor || !HasMember(named)) {
      ThrowNoMember(Widget(), "number " + std::to_string(member));
    }
    return named;
  }

  Value Parent() const;
  void SetExtent(MemberId member, int pixels);

  QPointer<QWidget> widget_;
};

Value QtWidgetObject::Get(MemberId member, std::span<const Value> /*indexes*/) {
  const QWidget& widget = Widget();
  switch (Named(member)) {
    case kName:
      return widget.objectName().toStdString();
    case kTag:
      return widget.property(kTagProperty).toString().toStdString();
    case kCaption:
    case kText:
      return WidgetText(widget).toStdString();
    case kParent:
      return Parent();
    case kHWnd:
      // A child's own handle would make the child a window of the system, which it need not be.
      return static_cast<std::int64_t>(widget.window()->winId());
    case kLeft:
      return TwipsOf(widget.x());
    case kTop:
      return TwipsOf(widget.y());
    case kWidth:
      return TwipsOf(widget.frameSize().width());
    case kHeight:
      return TwipsOf(widget.frameSize().height());
    case kVisible:
      return !widget.isHidden();
    case kEnabled:
      return widget.isEnabledTo(widget.parentWidget());
    case kBackColor:
      return ColorValue(WidgetColor(widget, ColorRole::kBack));
    case kForeColor:
      return ColorValue(WidgetColor(widget, ColorRole::kFore));
    default:
      ThrowNoMember(widget, "SetFocus as a property");
  }
}

void QtWidgetObject::Put(MemberId member, const Value& value, std::span<const Value> /*indexes*/) {
  QWidget& widget = Widget();
  const MemberId named = Named(member);
  switch (named) {
    case kTag:
      widget.setProperty(kTagProperty, QString::fromStdString(value.ToText()));
      return;
    case kCaption:
    case kText:
      SetWidgetText(widget, QString::fromStdString(value.ToText()));
      return;
    case kLeft:
      widget.move(PixelsOf(value.ToInt32()), widget.y());
      return;
    case kTop:
      widget.move(widget.x(), PixelsOf(value.ToInt32()));
      return;
    case kWidth:
    case kHeight:
      SetExtent(named, PixelsOf(value.ToInt32()));
      return;
    case kVisible:
      widget.setVisible(value.ToBoolean());
      return;
    case kEnabled:
      widget.setEnabled(value.ToBoolean());
      return;
    case kBackColor:
      SetWidgetColor(widget, ColorRole::kBack, ColorOf(value));
      return;
    case kForeColor:
      SetWidgetColor(widget, ColorRole::kFore, ColorOf(value));
      return;
    default:
      ThrowReadOnly(kMemberNames.at(static_cast<std::size_t>(named - 1)));
  }
}

// A window's parent is the window that owns it, if any.
Value QtWidgetObject::Parent() const {
  QWidget* const parent = Widget().parentWidget();
  return parent == nullptr ? Value(Value::ObjectPtr()) : Value(WidgetObject(*parent->window()));
}

// A window's size is counted with its frame.
void QtWidgetObject::SetExtent(MemberId member, int pixels) {
  QWidget& widget = Widget();
  const QSize frame = widget.frameSize() - widget.size();
  if (member == kWidth) {
    widget.resize(pixels - frame.width(), widget.height());
  } else {
    widget.resize(widget.width(), pixels - frame.height());
  }
}

}  // namespace

std::shared_ptr<Object> WidgetObject(QWidget& widget) {
  return std::make_shared<QtWidgetObject>(widget);
}

QWidget* WidgetOf(const Object& object) {
  const auto* adapter = dynamic_cast<const QtWidgetObject*>(&object);
  return adapter == nullptr ? nullptr : adapter->Pointer();
}

}  // namespace kel
