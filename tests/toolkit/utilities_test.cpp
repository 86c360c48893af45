#include <vector>

#include "toolkit/toolkit_fixture.h"

namespace kel {
namespace {

using testing::ControlPtr;
using testing::MakeControl;
using testing::MakeList;
using testing::Texts;

class UtilitiesTest : public testing::ToolkitTest {
 protected:
  static ControlPtr Form(int left, int top, int width, int height) {
    return MakeControl("Form",
                       {{"Left", left}, {"Top", top}, {"Width", width}, {"Height", height}});
  }
};

TEST_F(UtilitiesTest, TextsAreAlignedInDisplayCells) {
  struct Case {
    const char* text;
    int length;
    int align;
    const char* aligned;
  };
  const std::vector<Case> cases = {
      {"ab", 5, 0, " ab  "},   {"12", 5, -1, "   12"}, {"1,00,000.00", 13, -1, "  1,00,000.00"},
      {"abcdef", 3, 1, "abc"}, {"ab", 4, -1, "ab  "},  {"ab", 4, 9, "  ab"},
      {"राम", 4, 1, "राम  "},  {"日本", 3, 1, "日 "},  {"", 2, -1, "  "},
      {"ab", 2, 0, "ab"},      {"x", 0, 0, ""},
  };
  for (const Case& row : cases) {
    std::string text = row.text;
    EXPECT_EQ(toolkit_.AlignString(text, row.length, row.align), row.aligned);
    EXPECT_EQ(text, row.aligned);
  }
  EXPECT_EQ(toolkit_.AlignString("x", -1), "");
  EXPECT_EQ(Failure(), "[DLL.AlignString],5");
}

TEST_F(UtilitiesTest, FixForRoundsTheNumberAsItIsWritten) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"1.005", "1.01"}, {"-.125", "-0.13"}, {"9,99.995", "1000.00"}, {"-.004", "0.00"},
      {"5-", "-5.00"},   {"12abc", "12.00"}, {"abc", "0.00"},         {"1.5E3", "1500.00"}};
  for (const auto& [typed, fixed] : cases) EXPECT_EQ(toolkit_.FixFor(typed), Value(fixed));
  EXPECT_EQ(toolkit_.FixFor("123456789012345678901.235"), Value("123456789012345678901.24"));
  EXPECT_EQ(toolkit_.FixFor(2.675), Value("2.68"));
  EXPECT_EQ(toolkit_.FixFor(Value::Null()), Value("0.00"));
  EXPECT_EQ(toolkit_.FixFor(Currency{-12345678}, 3), Value("-1234.568"));
  EXPECT_EQ(toolkit_.FixFor("99.5", 0), Value("100"));
  EXPECT_EQ(Failure(), "");
  EXPECT_EQ(toolkit_.FixFor(1, -1), Value());
  EXPECT_EQ(Failure(), "[DLL.FixFor],5");
  EXPECT_EQ(toolkit_.ExVal("  -3.5 kg"), -3.5);
}

TEST_F(UtilitiesTest, DatesAreReadDayFirstAndCompletedFromWhatWasTyped) {
  EXPECT_EQ(toolkit_.FDate(Date{46112.75}), Value("31/03/2026"));
  EXPECT_EQ(toolkit_.FDate("1/2/2026"), Value("01/02/2026"));
  EXPECT_EQ(toolkit_.FDate("30/02/2026"), Value());
  EXPECT_EQ(toolkit_.FDate(Value::Null()), Value());

  const Value::Array typed_and_completed = {
      "5",          "05/11/2026", " 5/3 ",  "05/03/2026", "5-3",    "05/03/2026",
      "0503",       "05/03/2026", "050329", "05/03/2029", "050330", "05/03/1930",
      "05032026",   "05/03/2026", "5 mar",  "05/03/2026", "Mar 5",  "05/03/2026",
      "2026-03-05", "05/03/2026", "5.3.26", "05/03/2026"};
  const ControlPtr box = MakeControl("TextBox", {{"Text", ""}});
  for (std::size_t i = 0; i < typed_and_completed.size(); i += 2) {
    (*box)["Text"] = typed_and_completed[i];
    toolkit_.SimulateDate(*box);
    EXPECT_EQ((*box)["Text"], typed_and_completed[i + 1]);
  }
  for (const char* const no_date :
       {"31", "29/2", "503", "", "soon", "-5", "5/", "3/2026", "0500", "5/3/2026 14:05"}) {
    (*box)["Text"] = no_date;
    toolkit_.SimulateDate(*box);
    EXPECT_EQ((*box)["Text"], Value(no_date));
  }
  EXPECT_EQ(Failure(), "");
}

TEST_F(UtilitiesTest, ListsAreSearchedAndTheirSelectionIsReadForSql) {
  const ControlPtr list = MakeList("ListBox", {"Ash", "O'Hara", "ash", "Élan"});
  EXPECT_EQ(toolkit_.FindItem(*list, "ASH"), 0);
  EXPECT_EQ(toolkit_.FindItem(*list, "ASH", 0), 2);
  EXPECT_EQ(toolkit_.FindItem(*list, "ASH", 2), 0) << "round the end";
  EXPECT_EQ(toolkit_.FindItem(*list, "éLAN", 3), 3);
  EXPECT_EQ(toolkit_.FindItem(*list, "as"), -1);

  EXPECT_EQ(toolkit_.GetSelectedItems(*list), "");
  (*list)["ListIndex"] = 1;
  EXPECT_EQ(toolkit_.GetSelectedItems(*list), "'O''Hara'") << "the current item, without Selected";
  const ControlPtr multiple =
      MakeControl("ListBox", {{"ListCount", 3},
                              {"List", Value::Array{"a", "b'c", "d"}},
                              {"ItemData", Value::Array{10, 20, 30}},
                              {"Selected", Value::Array{true, false, true}}});
  EXPECT_EQ(toolkit_.GetSelectedItems(*multiple, false), "a,d");
  toolkit_.MakeSelected(*multiple, true);
  EXPECT_EQ(toolkit_.GetSelectedItems(*multiple), "'b''c'");
  toolkit_.MakeSelected(*multiple);
  EXPECT_EQ(toolkit_.GetSelectedItemData(*multiple), "10,20,30");
  EXPECT_EQ(toolkit_.GetSelectedItemData(*multiple, true), "'10','20','30'");

  const ControlPtr box =
      MakeControl("TextBox", {{"Text", "é😀x"}, {"SelStart", 9}, {"SelLength", 9}});
  toolkit_.MakeSelected(*box);
  EXPECT_TRUE((*box)["SelStart"] == 0 && (*box)["SelLength"] == 4);
  toolkit_.MakeSelected(*box, true);
  EXPECT_TRUE((*box)["SelStart"] == 4 && (*box)["SelLength"] == 0);

  const ControlPtr combo =
      MakeControl("ComboBox", {{"MaxLength", 9}, {"DropDownWidth", 9}, {"DropDownHeight", 9}});
  toolkit_.FixCombo(*combo, 20);
  toolkit_.SetComboRect(*combo, Value::Missing(), 3000);
  EXPECT_TRUE((*combo)["MaxLength"] == 20 && (*combo)["DropDownWidth"] == 9);
  EXPECT_EQ((*combo)["DropDownHeight"], Value(3000));
  EXPECT_EQ(Failure(), "");
  EXPECT_EQ(toolkit_.FindItem(*combo, "x"), -1);
  EXPECT_EQ(Failure(), "[DLL.FindItem],438");
}

TEST_F(UtilitiesTest, ARowMadeBoldLeavesTheCurrentCellAndSelectionAlone) {
  const ControlPtr grid = MakeControl("MSFlexGrid", {{"Row", 4},
                                                     {"Col", 1},
                                                     {"RowSel", 5},
                                                     {"ColSel", 2},
                                                     {"Cols", 2},
                                                     {"CellFontBold", false},
                                                     {"CellBackColor", 0}});
  std::string cells;
  grid->on_put = [&](const std::string& member, const Value& value) {
    if (member == "Row") (*grid)["RowSel"] = value;  // as a grid does
    if (member == "Col") (*grid)["ColSel"] = value;
    if (member.substr(0, 4) != "Cell") return;
    cells += (*grid)["Row"].ToText() + (*grid)["Col"].ToText() + member.substr(4, 4) +
             value.ToText() + " ";
  };
  toolkit_.MakeBold(*grid, 7, true);
  EXPECT_EQ(cells, "70FontTrue 70Back-2147483633 71FontTrue 71Back-2147483633 ");
  cells.clear();
  toolkit_.MakeBold(*grid, Value::Missing(), false, false);
  EXPECT_EQ(cells, "40FontFalse 41FontFalse ");
  for (const auto& [member, value] :
       {std::pair("Row", 4), {"Col", 1}, {"RowSel", 5}, {"ColSel", 2}}) {
    EXPECT_EQ((*grid)[member], Value(value)) << member;
  }
  EXPECT_EQ(Failure(), "");
}

TEST_F(UtilitiesTest, FormsArePlacedInTwips) {
  const ControlPtr form = Form(0, 0, 4500, 3000);
  desktop_->work_area = {0, 0, 1000, 700};
  toolkit_.AlignForm(*form);
  EXPECT_TRUE((*form)["Left"] == 10500 && (*form)["Top"] == 7500);
  toolkit_.Center(*form);
  EXPECT_TRUE((*form)["Left"] == 5250 && (*form)["Top"] == 3750);
  toolkit_.Center(*form, Value::ObjectPtr(Form(1000, 2000, 5500, 2000)));
  EXPECT_TRUE((*form)["Left"] == 1500 && (*form)["Top"] == 1500);
  toolkit_.Center(*form, 5);
  EXPECT_EQ(Failure(), "[DLL.Center],13");
}

TEST_F(UtilitiesTest, KeysTopmostWindowsAndPausesAreTheScreens) {
  toolkit_.SendKey(9, 1);
  toolkit_.ShowTopMost(0x123456789);
  toolkit_.Delay(0.0015);
  toolkit_.Delay(-1);
  EXPECT_EQ(desktop_->calls, (Texts{"key 9 1", "top 4886718345", "delay 2", "delay 0"}));
  toolkit_.Delay(1e9);
  EXPECT_EQ(Failure(), "[DLL.Delay],6");
}

}  // namespace
}  // namespace kel
