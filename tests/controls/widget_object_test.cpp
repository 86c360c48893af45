#include "controls/widget_object.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "controls/Button.h"
#include "controls/member_access.h"

namespace kel {
namespace {

using testing::ErrorOf;
using testing::Get;
using testing::Put;

TEST(WidgetObject, KindsAndDefaultMembersAreThePublishedOnes) {
  QLineEdit line("a");
  QPlainTextEdit plain("b");
  QComboBox combo;
  combo.addItems({"x", "c"});
  combo.setCurrentIndex(1);
  QDateEdit date(QDate(2026, 4, 1));
  date.setDisplayFormat("yyyy-MM-dd");
  QCheckBox check("&d");
  QRadioButton option("e");
  QLabel label("f");
  QGroupBox frame("g");
  Button button("&h");
  QDialog form;
  form.setWindowTitle("i");
  QListWidget list;
  // The kind, its default value, the member that holds it and one that there is not.
  const std::vector<std::tuple<QWidget&, const char*, Value, const char*, const char*>> cases = {
      {line, "TextBox", "a", "text", "Caption"},
      {plain, "TextBox", "b", "TEXT", "Caption"},
      {combo, "ComboBox", "c", "Text", "Caption"},
      {list, "ListBox", "", "Text", "Caption"},
      {date, "DTPicker", Date{46113}, "Value", "Caption"},
      {date, "DTPicker", Date{46113}, "value", "ListCount"},
      {check, "CheckBox", 0, "Value", "Text"},
      {option, "OptionButton", false, "Value", "Text"},
      {label, "Label", "f", "Caption", "Text"},
      {frame, "Frame", "g", "Caption", "Text"},
      {button, "CommandButton", "&h", "Caption", "Text"},
      {form, "Form", "i", "Caption", "Text"}};
  for (const auto& [widget, type_name, value, member, lacking] : cases) {
    const auto object = WidgetObject(widget);
    EXPECT_EQ(object->TypeName(), type_name);
    EXPECT_EQ(object->Get(Object::kDefaultMember), value) << type_name;
    EXPECT_EQ(object->Get(object->Resolve(member)), value) << type_name;
    for (const char* name : {lacking, "Colour", ""}) {
      const Error error = ErrorOf([&] { object->Resolve(name); });
      EXPECT_EQ(error.Number(), error_number::kNoSuchMember) << type_name;
      EXPECT_TRUE(testing::Contains(error, name));
    }
    for (const Object::MemberId id : {-1, 250, 999}) {
      EXPECT_EQ(ErrorOf([&] { object->Get(id); }).Number(), error_number::kNoSuchMember);
    }
  }
  EXPECT_EQ(Get(check, "Caption"), Value("&d"));
  EXPECT_EQ(Get(date, "Text"), Value("2026-04-01"));
}

TEST(WidgetObject, TextIsWrittenThroughTheFieldsOwnRules) {
  QLineEdit line;
  Put(line, "Text", 12.5);
  EXPECT_EQ(line.text(), "12.5");

  QSpinBox spin;
  spin.setRange(1, 50);
  Put(spin, "Text", "42");
  EXPECT_EQ(spin.value(), 42);
  EXPECT_EQ(ErrorOf([&] { Put(spin, "Text", "many"); }).Number(), error_number::kTypeMismatch);
  EXPECT_EQ(spin.value(), 42);

  QDateEdit date;
  date.setDisplayFormat("dd/MM/yyyy");
  Put(date, "Text", "31/03/2027");
  EXPECT_EQ(date.date(), QDate(2027, 3, 31));
}

TEST(WidgetObject, PlacesAreTwipsAndStatesAndColoursTheControlsOwn) {
  QWidget form;
  QLabel label(&form);
  form.setEnabled(false);
  EXPECT_EQ(Get(label, "Visible"), Value(true));
  EXPECT_EQ(Get(label, "Enabled"), Value(true));
  const std::vector<std::pair<const char*, Value>> members = {
      {"Left", 150},           {"Top", 1440},           {"Width", 2580},
      {"Height", 300},         {"Visible", false},      {"Enabled", false},
      {"BackColor", 0x00FF00}, {"ForeColor", 0x0000FF}, {"FontBold", true},
      {"FontUnderline", true}, {"FontItalic", true},    {"FontSize", 13.5},
      {"ToolTipText", "a"}};
  for (const auto& [member, value] : members) {
    Put(label, member, value);
    EXPECT_EQ(Get(label, member), value) << member;
  }
  EXPECT_EQ(label.geometry(), QRect(10, 96, 172, 20));
  EXPECT_TRUE(label.isHidden());
  EXPECT_EQ(label.grab().toImage().pixelColor(0, 0), QColor(Qt::green));
  Put(label, "Caption", "<b>");
  EXPECT_GT(label.sizeHint().width(), 0) << "no HTML";
  Button button("x");
  Put(button, "BackColor", -2147483633);
  EXPECT_EQ(button.BackColor(), system_color::kButtonFace);
  EXPECT_EQ(Get(button, "BackColor"), Value(-2147483633));
}

TEST(WidgetObject, TheParentIsTheWindowAndTheTagStaysWithTheWidget) {
  QDialog form;
  form.setWindowTitle("Vouchers");
  QGroupBox frame(&form);
  QLineEdit amount(&frame);
  amount.setObjectName("Amount");
  EXPECT_EQ(Get(amount, "Name"), Value("Amount"));
  EXPECT_EQ(ErrorOf([&] { Put(amount, "Name", "Other"); }).Number(), 383);

  const Value held = Get(amount, "Parent");
  Object& parent = held.ToObject();
  EXPECT_EQ(parent.Get(parent.Resolve("Caption")), Value("Vouchers"));
  EXPECT_TRUE(parent.IsSame(*WidgetObject(form)));
  EXPECT_FALSE(parent.IsSame(*WidgetObject(frame)));
  const Value of_form = Get(form, "Parent");
  EXPECT_EQ(ErrorOf([&] { of_form.ToObject(); }).Number(), error_number::kObjectNotSet);

  EXPECT_EQ(Get(amount, "Tag"), Value(""));
  Put(amount, "Tag", "Amount is needed.");
  EXPECT_EQ(Get(amount, "Tag"), Value("Amount is needed."));
  EXPECT_EQ(WidgetOf(*WidgetObject(amount)), &amount);
}

TEST(WidgetObject, SetFocusGivesTheFocusOrTellsThatItCannot) {
  QWidget form;
  QLineEdit first(&form);
  QLineEdit second(&form);
  form.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  const auto object = WidgetObject(second);
  Arguments none;
  const auto set_focus = [&] { object->Call(object->Resolve("SetFocus"), none); };
  set_focus();
  EXPECT_TRUE(second.hasFocus());
  second.setEnabled(false);
  EXPECT_EQ(ErrorOf(set_focus).Number(), error_number::kInvalidProcedureCall);
}

TEST(WidgetObject, AWidgetThatIsGoneGivesError91) {
  auto edit = std::make_unique<QLineEdit>("x");
  const auto object = WidgetObject(*edit);
  const auto other = WidgetObject(*edit);
  const Object::MemberId text = object->Resolve("Text");
  edit.reset();
  EXPECT_EQ(ErrorOf([&] { object->Get(text); }).Number(), error_number::kObjectNotSet);
  EXPECT_EQ(ErrorOf([&] { object->Put(text, "y"); }).Number(), error_number::kObjectNotSet);
  EXPECT_EQ(ErrorOf([&] { object->TypeName(); }).Number(), error_number::kObjectNotSet);
  EXPECT_EQ(WidgetOf(*object), nullptr);
  EXPECT_FALSE(object->IsSame(*other));
}

}  // namespace
}  // namespace kel
