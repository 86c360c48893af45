#include <sqlite3.h>

#include <vector>

#include "data/sql_quote.h"
#include "toolkit/toolkit_fixture.h"

namespace kel {
namespace {

using testing::ControlPtr;
using testing::MakeControl;
using testing::MakeForm;
using testing::Texts;

class FormBindingTest : public testing::BooksTest {
 protected:
  static ControlPtr Box(const char* text) {
    ControlPtr box = MakeControl("TextBox", {{"Text", text}, {"Name", "box"}});
    box->on_put = [](const std::string&, const Value& value) { value.ToText(); };
    return box;
  }
  ControlPtr Valued(const char* type, Value value) {
    ControlPtr control = MakeControl(type, {{"Value", std::move(value)}});
    control->default_member = "Value";
    return control;
  }
  // The texts of code to visits, each ended by "|".
  void Enter(std::string texts) {
    for (const ControlPtr& box : boxes_) {
      const std::size_t end = texts.find('|');
      (*box)["Text"] = texts.substr(0, end);
      texts.erase(0, end + 1);
    }
  }
  std::string Shown() {
    std::string shown;
    for (const ControlPtr& box : boxes_) shown += (*box)["Text"].ToText() + "|";
    return shown + (*active_)["Value"].ToText();
  }
  std::string Row(const std::string& code) {
    const ControlPtr list = testing::MakeList();
    toolkit_.FillControlSQL(
        books_, *list,
        "SELECT AccName, City, Opening, Rate, Since, Active, Visits, Remarks FROM "
        "Ledger WHERE AccCode=" +
            code,
        {}, "|");
    return (*list)["List"].ToArray().at(0).ToText();
  }

  const ControlPtr code_ = Box(""), name_ = Box(""), city_ = Box("");
  const std::vector<ControlPtr> boxes_ = {code_, name_, city_, Box(""), Box(""), Box(""), Box("")};
  const ControlPtr active_ = Valued("CheckBox", 1);
  const ControlPtr form_ = MakeForm({{"AccCode", code_},
                                     {"accname", name_},
                                     {"City", city_},
                                     {"Opening", boxes_[3]},
                                     {"Rate", boxes_[4]},
                                     {"Since", boxes_[5]},
                                     {"Active", active_},
                                     {"Visits", boxes_[6]}});
};

TEST_F(FormBindingTest, ARecordGoesFromTheFormToTheTableAndBack) {
  Enter("8|O'Hara|पुणे|1,00,000.10|0.1|31/3/26|12 times|");
  EXPECT_TRUE(toolkit_.Save(books_, *form_, "Ledger", ";remarks;"));
  EXPECT_EQ(Failure(), "");
  EXPECT_EQ(sqls_.at(0), "SELECT * FROM Ledger WHERE 1=2");
  EXPECT_EQ(Row("8"), "O'Hara|पुणे|100000.1|0.1|31/03/2026|True|12|new");

  Enter("|||||||");
  EXPECT_TRUE(toolkit_.SetSQLFields(books_, *form_,
                                    "SELECT AccCode, AccName, City, Opening, Rate, Since, Active,"
                                    " Visits FROM Ledger WHERE AccCode=8"));
  EXPECT_EQ(Shown(), "8|O'Hara|पुणे|100000.1|0.1|31/03/2026|12|1");

  Enter("8|Ohara||nothing||30/2/2026||");
  EXPECT_TRUE(toolkit_.Update(books_, *form_, "Ledger", "AccName=" + QuoteValue("O'Hara"), 0,
                              ";0;Remarks;VISITS;"));
  EXPECT_EQ(Row("8"), "Ohara||0|0||True|12|new") << "no number is 0, no date Null";
  EXPECT_EQ(desktop_->calls.back(), "pointer");
  EXPECT_TRUE(toolkit_.Delete(books_, "Ledger", "AccCode > 2"));
  EXPECT_EQ(LastSql(), "DELETE FROM Ledger WHERE AccCode > 2");
  EXPECT_EQ(Value1("SELECT count(*) FROM Ledger"), "2");
}

TEST_F(FormBindingTest, AmountsAreSavedAsTypedAndNeverThroughADouble) {
  books_.Execute("CREATE TABLE Sums (Amount CURRENCY, Rate DECIMAL(38,10), Id INTEGER)");
  const ControlPtr amount = Box("-922,337,203,685,477.5807"), rate = Box("0.10000000000000000001");
  const ControlPtr id = Box(" 9007199254740993 ");
  const ControlPtr form = MakeForm({{"Amount", amount}, {"Rate", rate}, {"Id", id}});
  EXPECT_TRUE(toolkit_.Save(books_, *form, "Sums"));
  EXPECT_NE(LastSql().find("[-922337203685477.5807] [0.10000000000000000001]"), std::string::npos)
      << LastSql();
  EXPECT_EQ(Value1("SELECT Id FROM Sums"), "9007199254740993");
  for (const char* const typed : {"0.1", "0.2", "12.10 less"}) {
    (*amount)["Text"] = typed;
    EXPECT_TRUE(toolkit_.Save(books_, *form, "Sums"));
  }
  EXPECT_EQ(Failure(), "");
  EXPECT_EQ(Value1("SELECT group_concat(Amount) FROM Sums WHERE Amount > 0"), "0.1,0.2,12.1");
}

TEST_F(FormBindingTest, ControlsOfChoiceTakeOneOrZeroAndOthersWhatTheyCanHold) {
  const ControlPtr option = Valued("OptionButton", 5), picker = Valued("DTPicker", 5);
  const ControlPtr form =
      MakeForm({{"a", option}, {"b", active_}, {"Since", picker}, {"d", city_}});
  const std::vector<std::pair<const char*, int>> cases = {
      {"1", 1}, {"-1", 1}, {"'True'", 1}, {"2", 0}, {"NULL", 0}};
  for (const auto& [sql, shown] : cases) {
    (*city_)["Text"] = "before";
    EXPECT_TRUE(toolkit_.SetSQLFields(books_, *form,
                                      std::string("SELECT ") + sql + " a, " + sql +
                                          " b, Since, City d FROM Ledger "
                                          "WHERE AccCode=2"));
    EXPECT_EQ((*option)["Value"], Value(shown)) << sql;
    EXPECT_EQ((*active_)["Value"], Value(shown)) << sql;
  }
  EXPECT_TRUE((*picker)["Value"].IsNull());
  EXPECT_EQ((*city_)["Text"], Value(""));
}

TEST_F(FormBindingTest, NothingMatchedLeavesTheFormAndFailsToUpdateOrDelete) {
  Enter("a|b|c|d|e|f|g|");
  EXPECT_TRUE(toolkit_.SetFields(books_, *form_, "Ledger", "AccCode=99"));
  EXPECT_EQ(LastSql(), "SELECT * FROM Ledger WHERE AccCode=99");
  EXPECT_EQ(Shown(), "a|b|c|d|e|f|g|1");
  EXPECT_FALSE(toolkit_.Update(books_, *form_, "Ledger", "AccCode=99", 0, ";Remarks;"));
  EXPECT_EQ(Failure(), "[DLL.Update],3021");
  EXPECT_FALSE(toolkit_.Delete(books_, "Ledger", "AccCode=99"));
  EXPECT_EQ(desktop_->messages.back().prompt, "3021 : No such records found.");
  EXPECT_EQ(Failure(), "[DLL.Delete],3021");
  EXPECT_FALSE(toolkit_.SetSQLFields(books_, *form_, "no SQL"));
  Failure();
  EXPECT_FALSE(toolkit_.Update(books_, *form_, "Ledger", "", 3));
  EXPECT_EQ(Failure(), "[DLL.Update],91") << "no recordset is open that could move";
  Enter("1|First||||||");
  EXPECT_TRUE(toolkit_.Update(books_, *form_, "Ledger", "", 0, ";Remarks;"));
  EXPECT_EQ(Value1("SELECT group_concat(AccName) FROM Ledger"), "First,Bank,Shah");
}

TEST_F(FormBindingTest, AFailureWritesNothingAndNamesItsOperation) {
  Enter("8|New||||||");
  EXPECT_FALSE(toolkit_.Save(books_, *form_, "Ledger")) << "no control for Remarks";
  EXPECT_EQ(Failure(), "[DLL.Save],730");
  EXPECT_FALSE(toolkit_.SetFields(books_, *form_, "Ledger", "AccCode=1"));
  EXPECT_EQ(Failure(), "[DLL.SetFields],730");
  EXPECT_FALSE(toolkit_.SetSQLFields(books_, *form_, "SELECT"));
  EXPECT_EQ(Failure().substr(0, 18), "[DLL.SetSQLFields]");
  (*code_)["Text"] = "1";
  EXPECT_FALSE(toolkit_.Save(books_, *form_, "Ledger", ";Remarks;")) << "the key is taken";
  EXPECT_NE(Log().find("UNIQUE"), std::string::npos) << Log();
  EXPECT_EQ(Failure().substr(0, 10), "[DLL.Save]");
  sqlite3* other = nullptr;
  sqlite3_open(file_.c_str(), &other);
  sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
  (*code_)["Text"] = "9";
  EXPECT_FALSE(toolkit_.Save(books_, *form_, "Ledger", ";Remarks;"));
  EXPECT_NE(Log().find("locked"), std::string::npos) << Log();
  sqlite3_close(other);
  EXPECT_EQ(Failure().substr(0, 10), "[DLL.Save]");
  EXPECT_EQ(Value1("SELECT group_concat(AccCode) FROM Ledger"), "1,2,7");
  books_.Close();
  EXPECT_FALSE(toolkit_.Delete(books_, "Ledger", "1=1"));
  EXPECT_EQ(Failure(), "[DLL.Delete],3704");
}

TEST_F(FormBindingTest, ControlsAreEmptiedByTheirKind) {
  struct Case {
    const char* type;
    testing::TestControl::Members members;
    const char* emptied;
    Value with;
  };
  std::vector<Case> cases = {
      {"Label", {{"Text", "x"}}, "Text", "x"},
      {"ComboBox", {{"Style", 2}, {"ListIndex", 4}, {"Text", "x"}}, "ListIndex", -1},
      {"ComboBox", {{"Style", 0}, {"ListIndex", 4}, {"Text", "x"}}, "Text", ""},
      {"CheckBox", {{"Value", 1}}, "Value", 0},
      {"DTPicker", {{"CheckBox", true}, {"Value", 5}}, "Value", Value::Null()},
      {"DTPicker", {{"CheckBox", false}, {"Value", 5}}, "Value", 5},
      {"CommandButton", {{"Caption", "OK"}}, "Caption", "OK"},
      {"TextBox", {{"Text", "x"}}, "Text", ""},
  };
  const ControlPtr kept = MakeControl("TextBox", {{"Text", "x"}, {"Name", "Kept"}});
  std::vector<std::pair<std::string, ControlPtr>> controls = {{"Kept", kept}};
  for (Case& row : cases) {
    row.members["Name"] = "c";
    controls.emplace_back("c", MakeControl(row.type, row.members));
  }
  toolkit_.Clear(*MakeForm(controls), {"KEPT"});
  EXPECT_EQ(desktop_->calls, (Texts{"hourglass", "pointer"}));
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ((*controls[i + 1].second)[cases[i].emptied], cases[i].with) << i;
  }
  EXPECT_TRUE((*controls[2].second)["Text"] == "x" && (*kept)["Text"] == "x");
  toolkit_.Clear(*kept);
  EXPECT_EQ(Failure(), "") << "no form at all";
  toolkit_.ClearCtrls({Value::ObjectPtr(kept), Value::ObjectPtr(controls[7].second)});
  EXPECT_EQ((*kept)["Text"], Value(""));
  EXPECT_EQ(Failure(), "[DLL.ClearCtrls],438");
}

}  // namespace
}  // namespace kel
