#include <QFontInfo>
#include <QLatin1String>
#include <QTabWidget>
#include <array>
#include <cmath>
#include <cstdint>

#include "common/error.h"
#include "common/twips.h"
#include "controls/colors.h"
#include "controls/widget_kind.h"
#include "controls/widget_members.h"
#include "controls/widget_object.h"

namespace kel {
namespace {

// A window's parent is the window that owns it, if any.
Value ParentOf(Control& control, Indexes /*indexes*/) {
  QWidget* const parent = control.Widget().parentWidget();
  return WidgetValue(parent == nullptr ? nullptr : parent->window());
}

// The widgets between a scroll area or a row of tabs and what a program has put into it are Qt's.
Value ContainerOf(Control& control, Indexes /*indexes*/) {
  QWidget* parent = control.Widget().parentWidget();
  while (parent != nullptr && parent->objectName().startsWith(QLatin1String("qt_"))) {
    parent = parent->parentWidget();
  }
  return WidgetValue(parent);
}

// Tabs that are behind others come to the front with what is in them.
void ShowPageOf(QWidget& widget) {
  for (QWidget* page = &widget; !page->isWindow(); page = page->parentWidget()) {
    QWidget* const stack = page->parentWidget();
    auto* const tabs = qobject_cast<QTabWidget*>(stack->parentWidget());
    const int tab = tabs == nullptr ? -1 : tabs->indexOf(page);
    if (tab >= 0 && tabs->isTabVisible(tab)) tabs->setCurrentIndex(tab);
  }
}

Value SetFocus(Control& control, Arguments& /*arguments*/) {
  QWidget& widget = control.Widget();
  if (widget.isEnabled()) ShowPageOf(widget);
  if (!widget.isEnabled() || !widget.isVisible()) {
    ThrowRefused(widget.objectName().toStdString() + " cannot take the focus");
  }
  widget.activateWindow();
  widget.setFocus(Qt::OtherFocusReason);
  return {};
}

Value ZOrder(Control& control, Arguments& arguments) {
  constexpr int kBehind = 1;
  const Value& position = ArgumentAt(arguments, 0, "Position");
  const bool behind = !position.IsMissing() && NumberWithin(position, 0, kBehind, "ZOrder") != 0;
  behind ? control.Widget().lower() : control.Widget().raise();
  return {};
}

// A window that has been given no size yet gets the one that its showing would give it.
QWidget& Sized(Control& control) {
  QWidget& widget = control.Widget();
  if (widget.isWindow() && !widget.isVisible() && !widget.testAttribute(Qt::WA_Resized)) {
    widget.adjustSize();
    widget.setAttribute(Qt::WA_Resized, false);
  }
  return widget;
}

// A window's size is counted with its frame.
QSize Frame(const QWidget& widget) { return widget.frameSize() - widget.size(); }

template <bool (QFont::*Is)() const>
Value FontStyle(Control& control, Indexes /*indexes*/) {
  return (control.Widget().font().*Is)();
}

template <void (QFont::*Set)(bool)>
void SetFontStyle(Control& control, const Value& value, Indexes /*indexes*/) {
  QFont font = control.Widget().font();
  (font.*Set)(value.ToBoolean());
  control.Widget().setFont(font);
}

// A font of so many pixels has points all the same.
Value FontSize(Control& control, Indexes /*indexes*/) {
  const QFont& font = control.Widget().font();
  return font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
}

void SetFontSize(Control& control, const Value& value, Indexes /*indexes*/) {
  constexpr double kMostPoints = 2160;
  const double points = value.ToDouble();
  if (!(points > 0 && points <= kMostPoints)) ThrowInvalidValue("FontSize");
  QFont font = control.Widget().font();
  font.setPointSizeF(points);
  control.Widget().setFont(font);
}

void SetFontName(Control& control, const Value& value, Indexes /*indexes*/) {
  QFont font = control.Widget().font();
  font.setFamilies({QTextOf(value)});
  control.Widget().setFont(font);
}

template <ColorRole Role>
Value Color(Control& control, Indexes /*indexes*/) {
  return ColorValue(WidgetColor(control.Widget(), Role));
}

template <ColorRole Role>
void SetColor(Control& control, const Value& value, Indexes /*indexes*/) {
  SetWidgetColor(control.Widget(), Role, ColorOf(value));
}

constexpr std::array kIdentity = {
    ControlMember{"Name", [](Control& c, Indexes) { return ValueOf(c.Widget().objectName()); }},
    ControlMember{
        "Tag",
        [](Control& c, Indexes) { return ValueOf(c.Widget().property(kTagProperty).toString()); },
        [](Control& c, const Value& value, Indexes) {
          c.Widget().setProperty(kTagProperty, QTextOf(value));
        }},
    ControlMember{"Parent", ParentOf},
    ControlMember{"Container", ContainerOf},
    ControlMember{"hWnd",
                  // A child's own handle would make the child a window of the system, which it need
                  // not be.
                  [](Control& c, Indexes) -> Value {
                    return static_cast<std::int64_t>(c.Widget().window()->winId());
                  }},
    ControlMember{"SetFocus", nullptr, nullptr, SetFocus},
    ControlMember{"ZOrder", nullptr, nullptr, ZOrder},
    ControlMember{"Left", [](Control& c, Indexes) -> Value { return TwipsOf(c.Widget().x()); },
                  [](Control& c, const Value& value, Indexes) {
                    c.Widget().move(PixelsOf(value.ToInt32()), c.Widget().y());
                  }},
    ControlMember{"Top", [](Control& c, Indexes) -> Value { return TwipsOf(c.Widget().y()); },
                  [](Control& c, const Value& value, Indexes) {
                    c.Widget().move(c.Widget().x(), PixelsOf(value.ToInt32()));
                  }},
    ControlMember{
        "Width", [](Control& c, Indexes) -> Value { return TwipsOf(Sized(c).frameSize().width()); },
        [](Control& c, const Value& value, Indexes) {
          QWidget& widget = Sized(c);
          widget.resize(PixelsOf(value.ToInt32()) - Frame(widget).width(), widget.height());
        }},
    ControlMember{
        "Height",
        [](Control& c, Indexes) -> Value { return TwipsOf(Sized(c).frameSize().height()); },
        [](Control& c, const Value& value, Indexes) {
          QWidget& widget = Sized(c);
          widget.resize(widget.width(), PixelsOf(value.ToInt32()) - Frame(widget).height());
        }},
    ControlMember{
        "Visible", [](Control& c, Indexes) -> Value { return !c.Widget().isHidden(); },
        [](Control& c, const Value& value, Indexes) { c.Widget().setVisible(value.ToBoolean()); }},
    ControlMember{
        "Enabled",
        [](Control& c, Indexes) -> Value {
          return c.Widget().isEnabledTo(c.Widget().parentWidget());
        },
        [](Control& c, const Value& value, Indexes) { c.Widget().setEnabled(value.ToBoolean()); }},
    ControlMember{
        "ToolTipText", [](Control& c, Indexes) { return ValueOf(c.Widget().toolTip()); },
        [](Control& c, const Value& value, Indexes) { c.Widget().setToolTip(QTextOf(value)); }},
    ControlMember{"BackColor", Color<ColorRole::kBack>, SetColor<ColorRole::kBack>},
    ControlMember{"ForeColor", Color<ColorRole::kFore>, SetColor<ColorRole::kFore>},
    ControlMember{"FontBold", FontStyle<&QFont::bold>, SetFontStyle<&QFont::setBold>},
    ControlMember{"FontItalic", FontStyle<&QFont::italic>, SetFontStyle<&QFont::setItalic>},
    ControlMember{"FontUnderline", FontStyle<&QFont::underline>,
                  SetFontStyle<&QFont::setUnderline>},
    ControlMember{"FontName",
                  [](Control& c, Indexes) { return ValueOf(c.Widget().font().family()); },
                  SetFontName},
    ControlMember{"FontSize", FontSize, SetFontSize},
};

}  // namespace

Value WidgetValue(QWidget* widget) {
  return widget == nullptr ? Value(Value::ObjectPtr()) : Value(WidgetObject(*widget));
}

ControlMembers CommonMembers() { return kIdentity; }

}  // namespace kel
