#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>
#include <array>

#include "controls/member_access.h"

namespace kel {
namespace {

using testing::Call;
using testing::Contains;
using testing::ErrorOf;
using testing::Get;
using testing::GetError;

template <typename Widget>
Widget* Named(const char* name, QWidget* parent) {
  auto* widget = new Widget(parent);
  widget->setObjectName(name);
  return widget;
}

// A form with a control in each kind of nesting.
struct EntryForm : QDialog {
  EntryForm() {
    setWindowTitle("Vouchers");
    auto* tabs = Named<QTabWidget>("Pages", this);
    auto* page = new QWidget;
    tabs->addTab(page, "Main");
    auto* frame = Named<QGroupBox>("Frame1", page);
    Named<QSpinBox>("Number", frame);
    auto* area = new QScrollArea(this);
    auto* inner = Named<QWidget>("Inner", nullptr);
    area->setWidget(inner);
    Named<QDateEdit>("Day", inner)->setCalendarPopup(true);
    auto* combo = Named<QComboBox>("Account", inner);
    combo->setEditable(true);
    Named<QTableWidget>("Lines", inner)->setCellWidget(0, 0, nullptr);
    Named<QLineEdit>("Amount", this);
    Named<QLineEdit>("AMOUNT", this);
    Named<QLineEdit>("Hidden", Named<QDialog>("Other", this));
    new QLabel("nameless", this);
  }
};

TEST(FormMembers, ControlsAreFoundByNameThroughAnyNesting) {
  EntryForm form;
  const Value controls = Get(form, "Controls");
  std::string names;
  for (int i = 0; i < Get(controls, "Count").ToInt32(); ++i) {
    const testing::Values index = {i};
    names += Get(controls.ToObject().Get(Object::kDefaultMember, index), "Name").ToText() + " ";
  }
  EXPECT_EQ(names, "Pages Frame1 Number Inner Day Account Lines Amount AMOUNT ");

  const Value amount = Get(controls, "Item", {"amount"});
  EXPECT_TRUE(amount.ToObject().IsSame(*WidgetObject(*form.findChild<QLineEdit*>("Amount"))));
  EXPECT_EQ(Get(Get(form, "Controls", {"day"}), "Name"), Value("Day"));
  EXPECT_EQ(Get(Get(*form.findChild<QGroupBox*>(), "Controls"), "Count"), Value(1));
  for (const char* name : {"Hidden", "nobody", "", "qt_spinbox_lineedit"}) {
    const Error error = ErrorOf([&] { Get(controls, "Item", {name}); });
    EXPECT_EQ(error.Number(), 730);
    EXPECT_TRUE(Contains(error, std::string("Control '") + name + "' not found"));
  }
  EXPECT_EQ(GetError(controls, "Item", {9}), 9);
  EXPECT_EQ(GetError(controls, "Item"), 450);
}

TEST(FormMembers, ControlsThatComeGoOrAreRenamedAreSeen) {
  auto form = std::make_unique<EntryForm>();
  const Value controls = Get(*form, "Controls");
  Get(controls, "Item", {"Amount"});
  auto* const late = Named<QLineEdit>("Late", form.get());
  EXPECT_EQ(Get(Get(controls, "Item", {"late"}), "Name"), Value("Late"));
  late->setObjectName("Later");
  EXPECT_EQ(GetError(controls, "Item", {"Late"}), 730);
  EXPECT_EQ(Get(Get(controls, "Item", {"Later"}), "Name"), Value("Later"));
  delete form->findChild<QLineEdit*>("Amount");
  EXPECT_EQ(Get(Get(controls, "Item", {"Amount"}), "Name"), Value("AMOUNT"));
  form.reset();
  EXPECT_EQ(GetError(controls, "Item", {"Amount"}), error_number::kObjectNotSet);
}

TEST(FormMembers, TheActiveControlIsTheOneThatHoldsTheFocus) {
  EntryForm form;
  Get(form, "Width");
  const QSize before = form.size();
  Call(form, "Show");
  EXPECT_EQ(form.size(), before);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  auto* note = new QLineEdit;
  form.findChild<QTabWidget*>("Pages")->addTab(note, "Note");
  Call(*note, "SetFocus");
  EXPECT_TRUE(note->hasFocus()) << "its page comes to the front";
  Call(*form.findChild<QComboBox*>("Account"), "SetFocus");
  EXPECT_EQ(Get(Get(form, "ActiveControl"), "Name"), Value("Account"));
  Call(form, "Hide");
  EXPECT_EQ(Get(form, "Visible"), Value(false));
}

}  // namespace
}  // namespace kel
