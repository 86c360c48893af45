#include <vector>

#include "toolkit/toolkit_fixture.h"

namespace kel {
namespace {

using testing::ControlPtr;
using testing::MakeControl;
using testing::Texts;

class ValidationTest : public testing::ToolkitTest {
 protected:
  Value Box(const char* text, const char* tag = "") const {
    return Value::ObjectPtr(
        MakeControl("TextBox", {{"Text", text}, {"Tag", tag}, {"Parent", form_}}));
  }
  /// What was told last, with its close time; "" when nothing was since the last call.
  std::string Told() {
    if (desktop_->messages.empty()) return "";
    const MessageRequest told = desktop_->messages.back();
    desktop_->messages.clear();
    EXPECT_TRUE(told.focus && !told.animate && told.buttons == msgOK);
    return told.prompt + " " + std::to_string(told.unload_time.count());
  }

  const Value form_ = Value::ObjectPtr(MakeControl("Form", {{"Caption", "Party"}}));
};

TEST_F(ValidationTest, TheFirstControlThatIsWrongIsToldInItsOwnWordsIfItHasAny) {
  EXPECT_FALSE(toolkit_.CheckEmpty({Box("x"), Box(" y ")}));
  EXPECT_FALSE(toolkit_.CheckEmpty({}));
  EXPECT_EQ(Told(), "");
  const Value blank = Box("   ", "  ");
  EXPECT_TRUE(toolkit_.CheckEmpty({Box("x"), blank, Box("", "Name?")}));
  ASSERT_EQ(desktop_->messages.size(), 1U) << "the rest is not examined";
  EXPECT_EQ(desktop_->messages[0].title, "Party");
  EXPECT_EQ(desktop_->messages[0].icon, msgInformation);
  EXPECT_EQ(desktop_->messages[0].converge_to, &blank.ToObject());
  EXPECT_EQ(Told(), "This field cannot be empty. 1000");
  EXPECT_TRUE(toolkit_.CheckEmpty({Box("", "Name?")}));
  EXPECT_EQ(Told(), "Name? 2000");

  EXPECT_FALSE(toolkit_.CheckZero({Box("0.01"), Box("-3 days")}));
  EXPECT_TRUE(toolkit_.CheckZero({Box("12"), Box("abc")}));
  EXPECT_EQ(Told(), "This field cannot be zero. 1000");
  EXPECT_FALSE(toolkit_.CheckZero({form_}));
  EXPECT_EQ(Failure(), "[DLL.CheckZero],438");
}

TEST_F(ValidationTest, ValuesAreCheckedAgainstAllSixConditions) {
  struct Case {
    int condition;
    Value limit;
    const char* good;
    const char* bad;
    const char* told;
  };
  const std::vector<Case> cases = {
      {mEqualto, "1e3 up", "1000.0", "1001", "equal to 1000."},
      {mLessthan, 0.5, "", "0.5", "less than 0.5."},
      {mGreaterthan, 0, "1", "none", "greater than 0."},
      {mLessthanOrEqualto, 100, "100", "100.5", "less than or equal to 100."},
      {mGreaterthanOrEqualto, -2, "-2", "-2.1", "greater than or equal to -2."},
      {mNotEqualto, 1e22, "1", "1e22", "not be equal to 10000000000000000000000."},
  };
  for (const Case& row : cases) {
    const auto condition = static_cast<Validation>(row.condition);
    EXPECT_FALSE(toolkit_.CheckValue(condition, row.limit, {Box(row.good)})) << row.told;
    EXPECT_TRUE(toolkit_.CheckValue(condition, row.limit, {Box(row.good), Box(row.bad)}));
    const std::string must = row.condition == mNotEqualto ? "must " : "must be ";
    EXPECT_EQ(Told(), "Value of this field " + must + row.told + " 2000");
  }
  EXPECT_FALSE(toolkit_.CheckValue(static_cast<Validation>(6), 1, {form_}));
  EXPECT_EQ(Failure(), "");
  EXPECT_FALSE(toolkit_.CheckValue(mEqualto, Value::Null(), {Box("1")}));
  EXPECT_EQ(Failure(), "[DLL.CheckValue],94");
}

TEST_F(ValidationTest, EqualIgnoresCaseOfAllLettersAndNothingElse) {
  EXPECT_TRUE(toolkit_.EQUAL("ÄGYPTEN Σας", "ägypten σΑΣ"));
  EXPECT_TRUE(toolkit_.EQUAL(12, "12"));
  EXPECT_TRUE(toolkit_.EQUAL(Value(), ""));
  EXPECT_FALSE(toolkit_.EQUAL("a", "a "));
  EXPECT_FALSE(toolkit_.EQUAL("a\xff", "a\xfe"));
  EXPECT_FALSE(toolkit_.EQUAL(Value::Null(), ""));
  EXPECT_EQ(Failure(), "[Not Specified],94");
}

TEST_F(ValidationTest, TheLaterRowOfTheFirstDuplicatePairIsTold) {
  // Two columns with a point between them.
  const std::vector<std::pair<Texts, int>> cases = {
      {{"Head.", "head.", "x."}, -1},
      {{".", "ab.c", "x.", "A.BC"}, 3},
      {{".", "x.", "y.", "y.", "y.", "X."}, 5},
      {{"only."}, -1},
  };
  for (const auto& [rows, duplicate] : cases) {
    Value::Array cells;
    for (const std::string& row : rows) {
      const std::size_t point = row.find('.');
      cells.emplace_back(Value::Array{0, row.substr(0, point), row.substr(point + 1)});
    }
    const ControlPtr grid = MakeControl("MSFlexGrid", {{"Rows", static_cast<int>(rows.size())},
                                                       {"FixedRows", 1},
                                                       {"TextMatrix", cells},
                                                       {"Row", -1},
                                                       {"Col", -1},
                                                       {"SetFocus", 0}});
    const bool found = duplicate > 0;
    EXPECT_EQ(toolkit_.CheckDuplicateRows(*grid, {1, 2}), found);
    EXPECT_EQ(Told(), found ? "Duplicate Row found. 2500" : "");
    EXPECT_TRUE((*grid)["Row"] == duplicate && (*grid)["Col"] == (found ? 1 : -1));
    EXPECT_EQ(grid->Calls(), found ? 1 : 0) << "SetFocus";
    EXPECT_EQ(Failure(), "");
    EXPECT_FALSE(toolkit_.CheckDuplicateRows(*grid, {3}));
    EXPECT_EQ(Failure(), rows.size() > 1 ? "[Not Specified],9" : "");
    desktop_->messages.clear();
  }
}

}  // namespace
}  // namespace kel
