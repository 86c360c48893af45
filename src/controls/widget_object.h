// Qt widgets as the Objects that toolkit operations take.
#pragma once

#include <QWidget>
#include <memory>
#include <string_view>

#include "common/object.h"

namespace kel {

/// The property of a widget that keeps its Tag.
inline constexpr const char* kTagProperty = "kelTag";

/// What a date picker implements (Object::Implements), and no other control.
inline constexpr std::string_view kDatePickerInterface = "{84656221-02A8-4F9B-9BD9-A5E50AE5D44B}";

/// A widget seen by the published member names of forms and controls. Every widget has Name, Tag,
/// Parent, SetFocus, Left, Top, Width, Height (twips), Visible, Enabled, BackColor, ForeColor, its
/// font and more; which further ones depends on what it is:
///
///     QLineEdit, QTextEdit, QPlainTextEdit, QSpinBox, QDoubleSpinBox   TextBox
///     QComboBox                                                        ComboBox
///     QListWidget, QListView with any model                            ListBox
///     QTreeWidget, QTreeView                                           ListView
///     QTableWidget, QTableView with any model                          MSFlexGrid
///     QCheckBox, QRadioButton, QAbstractButton                         CheckBox, OptionButton,
///                                                                      CommandButton
///     QDateEdit, QDateTimeEdit, QTimeEdit                              DTPicker
///     QLabel, QGroupBox, QTabWidget                                    Label, Frame, TabStrip
///     QProgressBar, QSlider, QScrollBar                                ProgressBar, Slider,
///                                                                      ScrollBar
///     windows, and what widgets are put into                           Form
///
/// A form's Controls finds its controls by their objectName:
///
///     const auto form = kel::WidgetObject(*this);
///     const auto controls = form->Get(form->Resolve("Controls"));
///     const std::array<kel::Value, 1> name = {"Amount"};
///     const auto amount = controls.ToObject().Get(kel::Object::kDefaultMember, name);
///
/// Two adapters of one widget are the same. The adapter does not own the widget: once that is gone
/// every use throws Error 91. It throws Error 438 for members that there are none of, 383 for
/// writing what can only be read, 380 for values that a property does not take, 9 or 381 for
/// indexes out of range.
std::shared_ptr<Object> WidgetObject(QWidget& widget);

/// The widget behind an Object; null when it is none, or gone.
QWidget* WidgetOf(const Object& object);

}  // namespace kel
