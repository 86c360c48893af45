#include "data/sql_quote.h"
#include "toolkit/toolkit_fixture.h"

namespace kel {
namespace {

using testing::ControlPtr;
using testing::MakeControl;
using testing::MakeList;
using testing::Texts;

class LookupsTest : public testing::BooksTest {
 protected:
  Texts Items() {
    Texts items;
    for (const Value& item : (*combo_)["List"].ToArray()) items.push_back(item.ToText());
    return items;
  }

  const ControlPtr combo_ = MakeList();
};

TEST_F(LookupsTest, StatementsAreBuiltToTheLastBlank) {
  toolkit_.FillControl(books_, *combo_, "Ledger", "[AccName]");
  EXPECT_EQ(LastSql(),
            "SELECT DISTINCT [AccName] FROM Ledger WHERE [AccName] Like('%') AND [AccName] Is Not "
            "Null ORDER BY [AccName]");
  EXPECT_EQ(Items(), (Texts{"Bank", "Cash", "Shah"}));
  EXPECT_EQ(desktop_->calls, (Texts{"hourglass", "pointer"}));
  toolkit_.FillControl(books_, *combo_, "Ledger", "City", "AccCode < 7");
  EXPECT_EQ(
      LastSql(),
      "SELECT DISTINCT City FROM Ledger WHERE AccCode < 7 AND City Is Not Null ORDER BY City");
  EXPECT_EQ(Items(), Texts{"Surat"});
  EXPECT_EQ(toolkit_.GetMaxValue(books_, "Ledger", "AccCode"), Value(7));
  EXPECT_EQ(LastSql(), "SELECT MAX(AccCode) FROM  Ledger WHERE AccCode Like('%')");
  EXPECT_EQ(toolkit_.GetAccountCode(books_, "Shah", "City='Anand'"), 7);
  EXPECT_EQ(LastSql(), "SELECT AccCode FROM  Ledger WHERE AccName='Shah' AND City='Anand'");
  EXPECT_EQ(toolkit_.GetAccountName(books_, 2), "Bank");
  EXPECT_EQ(LastSql(), "SELECT AccName FROM  Ledger WHERE AccCode= 2");
  EXPECT_EQ(Failure(), "");
}

TEST_F(LookupsTest, SingleValuesHaveTheirTypeAndNullOrNoRowIsEmpty) {
  const std::string cash = "SELECT Opening, Since, Active, Remarks FROM Ledger WHERE AccCode=1";
  EXPECT_EQ(toolkit_.GetField(books_, cash), Value(Currency{12501000}));
  EXPECT_EQ(toolkit_.GetField(books_, cash, 1), Value(Date{43922}));
  EXPECT_EQ(toolkit_.GetField(books_, cash, 2), Value(true));
  EXPECT_EQ(toolkit_.GetField(books_, cash, 3), Value());
  EXPECT_EQ(toolkit_.GetField(books_, "SELECT Name FROM Empty"), Value());
  EXPECT_EQ(toolkit_.GetMaxValue(books_, "Empty", "Name"), Value());
  EXPECT_EQ(toolkit_.GetMaxValue(books_, "Ledger", "AccCode", "1 GROUP BY City HAVING 1=2"),
            Value(0));
  EXPECT_EQ(toolkit_.GetAccountCode(books_, "Nobody"), 0);
  EXPECT_EQ(toolkit_.GetAccountName(books_, 99), "");
  EXPECT_EQ(Failure(), "");
  Value null = Value::Null();
  EXPECT_EQ(toolkit_.CheckNull(null), Value());
  EXPECT_EQ(null, Value());
  EXPECT_EQ(toolkit_.CheckNull("x"), Value("x"));
  EXPECT_EQ(toolkit_.GetField(books_, cash, 4), Value());
  EXPECT_EQ(Failure(), "[DLL.GetField],3265");
}

TEST_F(LookupsTest, FilledListsShowWhatTheyShouldShow) {
  const std::string cities = "SELECT City FROM Ledger ORDER BY AccCode";
  (*combo_)["Text"] = "Anand";
  toolkit_.FillPattern(books_, cities, *combo_, true, true);
  EXPECT_EQ(Items(), (Texts{"All", "Surat", "Anand"})) << "no Null";
  EXPECT_EQ((*combo_)["Text"], Value("Anand")) << "kept rather than All";
  toolkit_.FillPattern(books_, cities, *combo_);
  EXPECT_EQ((*combo_)["Text"], Value("All"));
  toolkit_.FillPattern(books_, cities, *combo_, false);
  EXPECT_EQ((*combo_)["Text"], Value(""));

  const std::string rows = "SELECT AccName, Opening, Since, Active, City FROM Ledger";
  toolkit_.FillControlSQL(books_, *combo_, rows, Value::Array{10, 20});
  EXPECT_EQ(Items(), (Texts{"Cash 1250.1 01/04/2020 True Surat", "Bank -5  False ",
                            "Shah 0 31/03/2026 True Anand"}));
  toolkit_.FillControlSQL(books_, *combo_, "SELECT City, AccCode, City FROM Ledger LIMIT 2", {},
                          " | ");
  EXPECT_EQ(Items(), (Texts{"Surat | 1 | Surat", " | 2 | "}));

  toolkit_.FillItemData(books_, *combo_, "SELECT AccCode, AccName FROM Ledger");
  EXPECT_EQ(Items(), (Texts{"Cash", "Bank", "Shah"}));
  EXPECT_EQ((*combo_)["ItemData"], Value(Value::Array{1, 2, 7}));
  EXPECT_EQ(Failure(), "");

  combo_->on_put = [](const std::string&, const Value&) { throw Error(383, "read-only"); };
  toolkit_.FillControl(books_, *combo_, "Ledger", "City", "", true);
  EXPECT_EQ(Failure(), "") << "a text that is not taken back is passed over";
  EXPECT_EQ(Items(), (Texts{"Anand", "Surat"}));
}

TEST_F(LookupsTest, AListViewTakesRowsUntilANullAmongItsSubItems) {
  std::vector<ControlPtr> rows;
  const ControlPtr items = MakeControl("ListItems", {{"Clear", 0}});
  items->On("Add", [&](Value::Array& arguments) -> Value {
    EXPECT_TRUE(arguments.at(0).IsMissing() && arguments.at(1).IsMissing());
    rows.push_back(
        MakeControl("ListItem", {{"Text", arguments.at(2)}, {"SubItems", Value::Array(3)}}));
    return Value::ObjectPtr(rows.back());
  });
  const ControlPtr view = MakeControl("ListView", {{"ListItems", Value::ObjectPtr(items)}});
  toolkit_.ListView(books_, *view, "SELECT AccName, Opening, Since FROM Ledger WHERE AccCode <> 2");
  EXPECT_EQ(Failure(), "");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ((*rows[1])["SubItems"], Value(Value::Array{Value(), "0", "31/03/2026"}));
  toolkit_.ListView(books_, *view, "SELECT AccName, City FROM Ledger");
  EXPECT_EQ(Failure(), "[DLL.ListView],94");
  EXPECT_EQ(rows.size(), 4U);
}

TEST_F(LookupsTest, BoundControlsTakeTheFirstRowByTheirKind) {
  const ControlPtr label = MakeControl("Label", {{"Caption", ""}});
  const ControlPtr check = MakeControl("CheckBox", {{"Value", 0}});
  check->on_put = [](const std::string&, const Value& value) { value.ToDouble(); };
  const ControlPtr picker = MakeControl("Calendar", {{"Value", ""}});
  picker->interface_name = "{84656221-02A8-4F9B-9BD9-A5E50AE5D44B}";
  const ControlPtr box = MakeControl("TextBox", {{"Text", ""}});
  box->on_put = [](const std::string&, const Value& value) { value.ToText(); };
  (*combo_)["ListIndex"] = 3;
  const auto object = [](const ControlPtr& control) { return Value(Value::ObjectPtr(control)); };
  Value::Array fields = {object(label),  object(check),  "passed over",
                         object(picker), object(combo_), object(box)};
  const std::string sql =
      "SELECT AccName, Active, Rate, Since, City, Remarks, Visits FROM Ledger WHERE AccCode=";
  toolkit_.BindTo(books_, sql + "99", fields);
  EXPECT_EQ((*label)["Caption"], Value(""));
  toolkit_.BindTo(books_, sql + "1", fields);
  EXPECT_EQ(Failure(), "");
  EXPECT_EQ((*label)["Caption"], Value("Cash"));
  EXPECT_EQ((*check)["Value"], Value(true));
  EXPECT_EQ((*picker)["Value"], Value(Date{43922}));
  EXPECT_EQ((*combo_)["Text"], Value("Surat"));
  EXPECT_EQ((*combo_)["ListIndex"], Value(-1));
  EXPECT_EQ((*box)["Text"], Value("")) << "it cannot hold Null";
  toolkit_.BindTo(books_, "SELECT NULL", {object(check)});
  EXPECT_EQ((*check)["Value"], Value(0)) << "it cannot hold Null";
  toolkit_.BindTo(books_, "SELECT AccName FROM Ledger", {1, object(label)});
  EXPECT_EQ(Failure(), "[DLL.BinTo],3265");
}

TEST_F(LookupsTest, AQuoteInANameBreaksTheStatementAndQuoteValueDoesNot) {
  toolkit_.OnError([](std::int32_t&, std::string&, bool& response) { response = false; });
  EXPECT_EQ(toolkit_.GetAccountCode(books_, "O'Hara"), 0);
  EXPECT_TRUE(desktop_->messages.empty());
  EXPECT_EQ(Log(), "");
  books_.Execute("INSERT INTO Ledger (AccCode, AccName) VALUES (8, 'O''Hara')");
  EXPECT_EQ(Value1("SELECT AccCode FROM Ledger WHERE AccName=" + QuoteValue("O'Hara")), "8");
}

TEST_F(LookupsTest, FailuresEndInTheErrorPathWithThePointerPutBack) {
  const ControlPtr label = MakeControl("Label", {{"Text", ""}});
  toolkit_.FillControl(books_, *label, "Ledger", "City");
  EXPECT_EQ(Failure(), "[DLL.FillControl],438");
  EXPECT_EQ(desktop_->calls.front(), "hourglass");
  EXPECT_EQ(desktop_->calls[1], "pointer");
  toolkit_.FillControl(books_, *combo_, "Ledger", "Ledger.City");
  EXPECT_EQ(Failure(), "[DLL.FillControl],3265") << "the result has no field of that name";
  toolkit_.FillItemData(books_, *combo_, "SELECT AccCode, City FROM Ledger");
  EXPECT_EQ(Failure(), "[DLL.FillItemData],94");
  books_.Execute("DROP TABLE Empty");
  toolkit_.FillControlSQL(books_, *combo_, "SELECT * FROM Empty");
  EXPECT_EQ(Failure(), "[DLL.FillControlSQL],3704");
  EXPECT_EQ(Items(), (Texts{"Surat"})) << "as far as it was filled before";
  books_.Close();
  EXPECT_EQ(toolkit_.GetMaxValue(books_, "Ledger", "AccCode"), Value());
  EXPECT_EQ(Failure(), "[DLL.GetMaxValue],3704");
}

TEST_F(LookupsTest, AControlMayCallTheSameToolkitBackWhileItIsFilled) {
  std::string names;
  const ControlPtr list = MakeList("ListBox");
  list->On("AddItem", [&](Value::Array& arguments) {
    names += toolkit_.GetAccountName(books_, arguments.at(0).ToInt32());
    toolkit_.GetField(books_, "no SQL");
    return Value();
  });
  toolkit_.FillControl(books_, *list, "Ledger", "AccCode");
  EXPECT_EQ(names, "CashBankShah");
}

}  // namespace
}  // namespace kel
