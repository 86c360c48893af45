// CZURDLL: what is selected in lists, combo boxes, texts and grids.
#include <array>

#include "common/object.h"
#include "common/ole_color.h"
#include "data/folded_text.h"
#include "toolkit/CZURDLL_p.h"
#include "toolkit/control_members.h"

namespace kel {
namespace {

constexpr std::int32_t kNoItem = -1;

std::int32_t NumberOf(Object& control, std::string_view name) {
  return Member(control, name).Get().ToInt32();
}

void SelectItems(Object& list, bool reverse) {
  Member selected(list, "Selected");
  const std::int32_t count = NumberOf(list, "ListCount");
  for (std::int32_t i = 0; i < count; ++i) {
    const bool select = !reverse || !ElementOf(selected, i).ToBoolean();
    const std::array<Value, 1> index = {i};
    selected.Put(select, index);
  }
}

// In the units of SelStart and SelLength: those of UTF-16.
std::int32_t SelectionLength(std::string_view text) {
  std::int32_t length = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0U) != 0x80U) ++length;
    if (byte >= 0xF0U) ++length;
  }
  return length;
}

void SelectText(Object& control, bool reverse) {
  const std::int32_t length = SelectionLength(MemberText(control, "Text"));
  Member(control, "SelStart").Put(reverse ? length : 0);
  Member(control, "SelLength").Put(reverse ? 0 : length);
}

std::string InQuotes(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') quoted += c;
    quoted += c;
  }
  return quoted + "'";
}

// The elements of a list member (List, ItemData) that stand for selected items.
std::string JoinSelected(Object& control, const char* member, bool string_bind) {
  std::string joined;
  Member elements(control, member);
  const auto append = [&](std::int32_t item) {
    const std::string text = ElementOf(elements, item).ToText();
    if (!joined.empty()) joined += ',';
    joined += string_bind ? InQuotes(text) : text;
  };
  if (!HasMember(control, "Selected")) {
    const std::int32_t current = NumberOf(control, "ListIndex");
    if (current != kNoItem) append(current);
    return joined;
  }
  Member selected(control, "Selected");
  const std::int32_t count = NumberOf(control, "ListCount");
  for (std::int32_t i = 0; i < count; ++i) {
    if (ElementOf(selected, i).ToBoolean()) append(i);
  }
  return joined;
}

// The grid's current cell and selection, put back at its end.
class KeptCell {
 public:
  explicit KeptCell(Object& grid) : grid_(grid) {
    for (std::size_t i = 0; i < kMembers.size(); ++i)
      places_.at(i) = NumberOf(grid, kMembers.at(i));
  }
  ~KeptCell() {
    for (std::size_t i = 0; i < kMembers.size(); ++i) {
      Quietly([&] { Member(grid_, kMembers.at(i)).Put(places_.at(i)); });
    }
  }
  KeptCell(const KeptCell&) = delete;
  KeptCell& operator=(const KeptCell&) = delete;

 private:
  // Row and Col first: writing them makes the selection their one cell.
  static constexpr std::array<const char*, 4> kMembers = {"Row", "Col", "RowSel", "ColSel"};

  Object& grid_;
  std::array<std::int32_t, kMembers.size()> places_{};
};

}  // namespace

std::int32_t CZURDLL::FindItem(Object& Ctrl, const std::string& mStr, std::int32_t Start) {
  return Guarded("DLL.FindItem", kNoItem, [&] {
    const std::string wanted = Folded(mStr);
    const std::int32_t count = NumberOf(Ctrl, "ListCount");
    const std::int32_t first = Start >= 0 && Start < count - 1 ? Start + 1 : 0;
    Member list(Ctrl, "List");
    for (std::int32_t i = 0; i < count; ++i) {
      const std::int32_t item = i < count - first ? first + i : i - (count - first);
      if (Folded(ElementOf(list, item).ToText()) == wanted) return item;
    }
    return kNoItem;
  });
}

void CZURDLL::FixCombo(Object& Ctrl, std::int32_t MaxChar) {
  Guarded("DLL.FixCombo", [&] {
    if (MaxChar < 0) throw Error(error_number::kInvalidProcedureCall, "MaxChar is negative");
    Member(Ctrl, "MaxLength").Put(MaxChar);
  });
}

void CZURDLL::SetComboRect(Object& Ctrl, const Value& Width, const Value& Height) {
  Guarded("DLL.SetComboRect", [&] {
    if (!Width.IsMissing()) Member(Ctrl, "DropDownWidth").Put(Width.ToInt32());
    if (!Height.IsMissing()) Member(Ctrl, "DropDownHeight").Put(Height.ToInt32());
  });
}

void CZURDLL::MakeSelected(Object& Ctrl, bool Reverse) {
  Guarded("DLL.MakeSelected", [&] {
    if (HasMember(Ctrl, "Selected")) {
      SelectItems(Ctrl, Reverse);
    } else {
      SelectText(Ctrl, Reverse);
    }
  });
}

std::string CZURDLL::GetSelectedItemData(Object& Ctrl, bool StringBind) {
  return Guarded("DLL.GetSelectedItemData", std::string(),
                 [&] { return JoinSelected(Ctrl, "ItemData", StringBind); });
}

std::string CZURDLL::GetSelectedItems(Object& Ctrl, bool StringBind) {
  return Guarded("DLL.GetSelectedItems", std::string(),
                 [&] { return JoinSelected(Ctrl, "List", StringBind); });
}

void CZURDLL::MakeBold(Object& MSFG, const Value& Row, bool GLine, bool Bold) {
  Guarded("DLL.MakeBold", [&] {
    const KeptCell kept(MSFG);
    if (!Row.IsMissing()) Member(MSFG, "Row").Put(Row.ToInt32());
    Member col(MSFG, "Col");
    Member font_bold(MSFG, "CellFontBold");
    Member back_color(MSFG, "CellBackColor");
    const std::int32_t columns = NumberOf(MSFG, "Cols");
    for (std::int32_t column = 0; column < columns; ++column) {
      col.Put(column);
      font_bold.Put(Bold);
      if (GLine) back_color.Put(static_cast<std::int32_t>(system_color::kButtonFace));
    }
  });
}

}  // namespace kel
