#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QtWidgets>
#include <chrono>
#include <memory>
#include <vector>

#include "controls/member_access.h"

namespace kel {
namespace {

using testing::Call;
using testing::CallError;
using testing::Get;
using testing::GetError;
using testing::Put;
using testing::PutError;

// The kinds of lists: combo boxes, a list widget and views of models.
struct Lists {
  QComboBox choice, entry;
  QListWidget widget;
  QListView strings, standard;
  QStringListModel string_model;
  QStandardItemModel standard_model;

  Lists() {
    entry.setEditable(true);
    strings.setModel(&string_model);
    standard.setModel(&standard_model);
  }
  std::vector<QWidget*> All() { return {&choice, &entry, &widget, &strings, &standard}; }
};

TEST(ListMembers, ItemsAreAddedFoundAndRemovedInEveryListAlike) {
  Lists lists;
  for (QWidget* list : lists.All()) {
    SCOPED_TRACE(Get(*list, "Name").ToText() + list->metaObject()->className());
    EXPECT_EQ(Get(*list, "NewIndex"), Value(-1));
    Call(*list, "AddItem", {"Cash"});
    Call(*list, "additem", {"हस्तगत"});
    Call(*list, "AddItem", {12.5, 1});
    EXPECT_EQ(Get(*list, "NewIndex"), Value(1));
    EXPECT_EQ(Get(*list, "ListCount"), Value(3));
    EXPECT_EQ(Get(*list, "List", {1}), Value("12.5"));
    EXPECT_EQ(Get(*list, "List", {-1}), Value(""));
    EXPECT_EQ(Get(*list, "ListIndex"), Value(-1)) << "nobody has chosen anything";
    Put(*list, "Text", "हस्तगत");
    EXPECT_EQ(Get(*list, "ListIndex"), Value(2));
    Put(*list, "ListIndex", 0);
    EXPECT_EQ(WidgetObject(*list)->Get(Object::kDefaultMember), Value("Cash"));
    Put(*list, "Text", "");
    EXPECT_EQ(Get(*list, "ListIndex"), Value(-1)) << "a blank chooses nothing";
    Call(*list, "RemoveItem", {0});
    EXPECT_EQ(Get(*list, "List", {0}), Value("12.5"));
    EXPECT_EQ(Get(*list, "NewIndex"), Value(-1));
    EXPECT_EQ(GetError(*list, "List", {2}), 381);
    EXPECT_EQ(GetError(*list, "List"), 450);
    EXPECT_EQ(GetError(*list, "ItemData", {-1}), 381);
    EXPECT_EQ(PutError(*list, "ListIndex", 2), 380);
    EXPECT_EQ(PutError(*list, "ListCount", 2), 383);
    EXPECT_EQ(CallError(*list, "RemoveItem", {2}), error_number::kInvalidProcedureCall);
    EXPECT_EQ(CallError(*list, "AddItem", {"x", 9}), error_number::kInvalidProcedureCall);
    EXPECT_EQ(CallError(*list, "AddItem"), error_number::kTypeMismatch);
    EXPECT_EQ(CallError(*list, "AddItem", {Value::Null()}), error_number::kInvalidUseOfNull);
    Call(*list, "Clear");
    EXPECT_EQ(Get(*list, "ListCount"), Value(0));
    EXPECT_EQ(Get(*list, "Text"), Value(""));
  }
  QFileSystemModel fixed;
  QListView files;
  files.setModel(&fixed);
  EXPECT_EQ(CallError(files, "AddItem", {"x"}), error_number::kInvalidProcedureCall);
  QListView bare;
  EXPECT_EQ(CallError(bare, "AddItem", {"x"}), error_number::kObjectNotSet);
}

TEST(ListMembers, ItemDataIsANumberOrWhatTheProgramHasKeptThere) {
  QComboBox combo;
  combo.addItem("a", QStringLiteral("0017"));
  combo.addItem("b", 2.5);
  combo.addItem("c");
  EXPECT_EQ(Get(combo, "ItemData", {0}), Value("0017"));
  EXPECT_EQ(Get(combo, "ItemData", {1}), Value(2.5));
  EXPECT_EQ(Get(combo, "ItemData", {2}), Value(0));
  Put(combo, "ItemData", "-2147483648", {2});
  EXPECT_EQ(combo.itemData(2), QVariant(-2147483647 - 1));
  EXPECT_EQ(Get(combo, "ItemData", {2}), Value(-2147483647 - 1));
  EXPECT_EQ(PutError(combo, "ItemData", 2147483648.0, {2}), error_number::kOverflow);
  EXPECT_EQ(PutError(combo, "ItemData", "A1", {2}), error_number::kTypeMismatch);
}

TEST(ListMembers, ADropDownListHoldsItsItemsAndAComboWhatIsTyped) {
  Lists lists;
  QSignalSpy chosen(&lists.choice, &QComboBox::currentIndexChanged);
  for (QComboBox* combo : {&lists.choice, &lists.entry}) {
    for (const char* item : {"Cash", "Bank"}) Call(*combo, "AddItem", {item});
  }
  EXPECT_EQ(chosen.count(), 0);
  EXPECT_EQ(Get(lists.choice, "Style"), Value(2));
  EXPECT_EQ(Get(lists.entry, "Style"), Value(0));
  EXPECT_EQ(PutError(lists.choice, "Text", "bank"), 383);
  EXPECT_EQ(GetError(lists.choice, "SelStart"), 383);
  Put(lists.entry, "ListIndex", 1);
  Put(lists.entry, "Text", "Stock");
  EXPECT_EQ(lists.entry.currentText(), "Stock");
  EXPECT_EQ(Get(lists.entry, "ListIndex"), Value(-1)) << "what is typed is no item";
  Put(lists.entry, "SelLength", 9);
  Put(lists.entry, "SelStart", 1);
  Put(lists.entry, "SelLength", 99);
  EXPECT_EQ(Get(lists.entry, "SelText"), Value("tock"));
  Put(lists.entry, "MaxLength", 5);
  EXPECT_EQ(PutError(lists.entry, "Text", "Stocks"), 380);
  Call(lists.entry, "RemoveItem", {1.0});
  EXPECT_EQ(Get(lists.entry, "Text"), Value("Stock"));
  Put(lists.choice, "ListIndex", 0);
  Call(lists.choice, "RemoveItem", {0});
  EXPECT_EQ(Get(lists.choice, "ListIndex"), Value(-1)) << "Bank was not chosen";
  Put(lists.choice, "DropDownWidth", 6000);
  EXPECT_EQ(lists.choice.view()->minimumWidth(), 400);
  Put(lists.entry, "MaxLength", 3);
  EXPECT_EQ(PutError(lists.entry, "ListIndex", 0), 380) << "Cash would become Cas";
}

TEST(ListMembers, SeveralItemsAreSelectedWhereAListLetsThem) {
  Lists lists;
  for (QWidget* list :
       {static_cast<QWidget*>(&lists.widget), static_cast<QWidget*>(&lists.strings)}) {
    for (int i = 0; i < 5; ++i) Call(*list, "AddItem", {i});
    Put(*list, "Selected", true, {1});
    Put(*list, "Selected", true, {2});
    EXPECT_EQ(Get(*list, "SelCount"), Value(1)) << "one at a time";
    Put(*list, "MultiSelect", 1);
    for (const int i : {0, 2, 3, 4}) Put(*list, "Selected", true, {i});
    Put(*list, "Selected", false, {3});
    EXPECT_EQ(Get(*list, "SelCount"), Value(3));
    EXPECT_EQ(Get(*list, "Selected", {4}), Value(true));
    EXPECT_EQ(Get(*list, "Selected", {3}), Value(false));
    Put(*list, "ListIndex", 3);
    EXPECT_EQ(Get(*list, "SelCount"), Value(3)) << "the current item need not be selected";
    EXPECT_EQ(PutError(*list, "MultiSelect", 3), 380);
  }
}

TEST(ListMembers, ASortedListTellsWhereAnItemHasGone) {
  QListWidget list;
  list.setSortingEnabled(true);
  EXPECT_EQ(Get(list, "Sorted"), Value(true));
  for (const char* item : {"b", "c", "a"}) Call(list, "AddItem", {item});
  EXPECT_EQ(Get(list, "NewIndex"), Value(0));
  EXPECT_EQ(Get(list, "List", {2}), Value("c"));
}

double SecondsToFill(QWidget& list, int items) {
  const auto object = WidgetObject(list);
  const Object::MemberId add = object->Resolve("AddItem");
  Arguments arguments{{""}, {}};
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < items; ++i) {
    arguments.positional[0] = Value(i);
    object->Call(add, arguments);
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(ListMembers, TenTimesTheItemsTakeNoMoreThanTenTimesAndSome) {
  Lists few;
  Lists many;
  for (std::size_t i = 0; i < few.All().size(); ++i) {
    const double base = SecondsToFill(*few.All()[i], 3000);
    EXPECT_LT(SecondsToFill(*many.All()[i], 30000), 50 * base) << i;
  }
}

TEST(ListMembers, AListViewIsFilledThroughItsItemsAndTheirKeys) {
  QTreeWidget widget;
  QTreeView view;
  QStandardItemModel model;
  view.setModel(&model);
  for (QTreeView* list : {static_cast<QTreeView*>(&widget), &view}) {
    const Value headers = Get(*list, "ColumnHeaders");
    Call(headers, "Add", {Value::Missing(), Value::Missing(), "Account", 3000});
    EXPECT_EQ(Get(headers, "Count"), Value(1));
    const Value items = Get(*list, "ListItems");
    const Value cash = Call(items, "Add", {Value::Missing(), "k1", "Cash"});
    Put(cash, "SubItems", 1250, {2});
    EXPECT_EQ(Get(headers, "Count"), Value(3)) << "columns come as they are needed";
    const Value bank = Call(items, "Add", {1, "k2", "Bank"});
    Call(items, "Add", {Value::Missing(), Value::Missing(), "Stock"});
    EXPECT_EQ(Get(cash, "Index"), Value(2));
    EXPECT_EQ(Get(Get(items, "Item", {"k1"}), "Text"), Value("Cash"));
    EXPECT_EQ(Get(Get(*list, "ListItems", {2}), "SubItems", {2}), Value("1250"));
    EXPECT_EQ(Get(Get(headers, "Item", {1}), "Text"), Value("Account"));
    for (const char* member : {"Selected", "Checked", "Bold"}) {
      Put(cash, member, true);
      EXPECT_EQ(Get(cash, member), Value(true)) << member;
      EXPECT_EQ(Get(bank, member), Value(false)) << member;
    }
    EXPECT_TRUE(Get(*list, "SelectedItem").ToObject().IsSame(cash.ToObject()));
    EXPECT_EQ(CallError(items, "Add", {Value::Missing(), "k2", "x"}), 35602);
    EXPECT_EQ(GetError(items, "Item", {"k9"}), 35601);
    EXPECT_EQ(GetError(items, "Item", {4}), 35600);
    EXPECT_EQ(PutError(cash, "SubItems", "x", {0}), 380);
    EXPECT_EQ(PutError(cash, "SubItems", Value::Null(), {1}), error_number::kInvalidUseOfNull);
    Put(bank, "Key", "k3");
    Call(items, "Remove", {"k3"});
    EXPECT_EQ(GetError(bank, "Text"), error_number::kObjectNotSet);
    EXPECT_EQ(Get(cash, "Index"), Value(1));
    Call(items, "Clear");
    EXPECT_EQ(Get(items, "Count"), Value(0));
    EXPECT_EQ(GetError(cash, "Text"), error_number::kObjectNotSet);
  }
}

}  // namespace
}  // namespace kel
