// CZURDLL: list controls and labels filled from a database.
#include <algorithm>

#include "common/object.h"
#include "data/Recordset.h"
#include "toolkit/CZURDLL_p.h"
#include "toolkit/control_members.h"

namespace kel {
namespace {

constexpr const char* kAllItem = "All";

// The items of a list control. AddItem is looked up when there is an item, as late binding does.
class ListItems {
 public:
  explicit ListItems(Object& control) : control_(control), item_{Value::Array(1), {}} {}

  void Clear() { Member(control_, "Clear").Call(); }

  void Add(Value text) {
    if (!resolved_) add_item_ = control_.Resolve("AddItem");
    resolved_ = true;
    item_.positional.front() = std::move(text);
    control_.Call(add_item_, item_);
  }

 private:
  Object& control_;
  Arguments item_;
  Object::MemberId add_item_ = 0;
  bool resolved_ = false;
};

std::string WithoutBrackets(std::string name) {
  std::erase_if(name, [](char c) { return c == '[' || c == ']'; });
  return name;
}

// A column's text as its value has it; Null adds nothing. A field's own text is the same and costs
// no copy, but for dates and amounts.
void AppendColumn(std::string& line, const Recordset& rows, int column) {
  const FieldType type = rows.Field(column).type;
  if (type != FieldType::kDate && type != FieldType::kCurrency) {
    line += rows.FieldText(column);
  } else if (const Value value = rows.FieldValue(column); !value.IsNull()) {
    line += value.ToText();
  }
}

// The current row's columns, joined. The last divider is cut by its length, whatever the columns
// hold.
std::string JoinedRow(const Recordset& rows, const std::string& divider, std::size_t expected) {
  std::string line;
  line.reserve(expected);
  for (int column = 0; column < rows.FieldCount(); ++column) {
    AppendColumn(line, rows, column);
    line += divider;
  }
  line.resize(line.size() - divider.size());
  return line;
}

void AddRowTo(Object& list_items, Object::MemberId add, const Recordset& row) {
  Arguments index_key_text{{Value::Missing(), Value::Missing(), row.FieldValue(0)}, {}};
  const Value item = list_items.Call(add, index_key_text);
  if (row.FieldCount() == 1) return;
  const Object::MemberId sub_items = item.ToObject().Resolve("SubItems");
  for (int column = 1; column < row.FieldCount(); ++column) {
    const std::array<Value, 1> index = {column};
    item.ToObject().Put(sub_items, row.FieldValue(column).ToText(), index);
  }
}

void ShowValue(Object& control, const Value& value) {
  const char* member = "Text";
  Value blank = "";
  if (IsKind(control, "Label")) {
    member = "Caption";
  } else if (IsKind(control, "ComboBox")) {
    Member(control, "ListIndex").Put(-1);
  } else if (IsKind(control, "CheckBox")) {
    member = "Value";
    blank = 0;
  } else if (BearsValue(control)) {
    member = "Value";
  }
  PutOrBlank(control, control.Resolve(member), value, blank);
}

}  // namespace

void CZURDLL::FillControl(Connection& Cnn, Object& Ctrl, const std::string& Table,
                          const std::string& Fld, const std::string& Pattern, bool PreserveData) {
  Guarded("DLL.FillControl", [&] {
    const Hourglass hourglass;
    const KeptText kept(Ctrl);
    const std::string condition = Pattern.empty() ? Fld + " Like('%')" : Pattern;
    SharedRecordset rows(recordset_);
    rows->Open("SELECT DISTINCT " + Fld + " FROM " + Table + " WHERE " + condition + " AND " + Fld +
                   " Is Not Null ORDER BY " + Fld,
               Cnn, CursorType::kForwardOnly, LockType::kReadOnly);
    ListItems items(Ctrl);
    items.Clear();
    if (!rows->EndOfFile()) {
      const int field = rows->FieldIndex(WithoutBrackets(Fld));
      for (; !rows->EndOfFile(); rows->MoveNext()) items.Add(rows->FieldValue(field));
    }
    rows.CloseAndRelease();
    if (PreserveData) kept.Restore();
  });
}

void CZURDLL::FillPattern(Connection& Cnn, const std::string& SQL, Object& Ctrl, bool All,
                          bool PreserveData) {
  Guarded("DLL.FillPattern", [&] {
    const Hourglass hourglass;
    const KeptText kept(Ctrl);
    Recordset rows;
    rows.Open(SQL, Cnn, CursorType::kForwardOnly, LockType::kOptimistic);
    ListItems items(Ctrl);
    items.Clear();
    if (All) items.Add(kAllItem);
    for (; !rows.EndOfFile(); rows.MoveNext()) {
      if (Value value = rows.FieldValue(0); !value.IsNull()) items.Add(std::move(value));
    }
    rows.Close();
    if (PreserveData) {
      kept.Restore();
    } else if (All) {
      Ctrl.Put(Object::kDefaultMember, kAllItem);
    }
  });
}

void CZURDLL::FillControlSQL(Connection& Cnn, Object& Ctrl, const std::string& SQL,
                             const Value& /*WidthArray*/, const std::string& Divider,
                             bool PreserveData) {
  Guarded("DLL.FillControlSQL", [&] {
    const Hourglass hourglass;
    const KeptText kept(Ctrl);
    const std::string divider = Divider.empty() ? " " : Divider;
    SharedRecordset rows(recordset_);
    rows->Open(SQL, Cnn, CursorType::kKeyset, LockType::kReadOnly);
    ListItems items(Ctrl);
    items.Clear();
    std::size_t longest = 0;
    for (; !rows->EndOfFile(); rows->MoveNext()) {
      std::string line = JoinedRow(*rows, divider, longest + divider.size());
      longest = std::max(longest, line.size());
      items.Add(std::move(line));
    }
    rows.CloseAndRelease();
    if (PreserveData) kept.Restore();
  });
}

void CZURDLL::FillItemData(Connection& Cnn, Object& Ctrl, const std::string& SQL,
                           bool PreserveData) {
  Guarded("DLL.FillItemData", [&] {
    const Hourglass hourglass;
    const KeptText kept(Ctrl);
    Recordset rows;
    rows.Open(SQL, Cnn, CursorType::kForwardOnly, LockType::kReadOnly);
    ListItems items(Ctrl);
    items.Clear();
    Member new_index(Ctrl, "NewIndex");
    Member item_data(Ctrl, "ItemData");
    for (; !rows.EndOfFile(); rows.MoveNext()) {
      items.Add(rows.FieldValue(1));
      const std::array<Value, 1> index = {new_index.Get()};
      item_data.Put(rows.FieldValue(0), index);
    }
    rows.Close();
    if (PreserveData) kept.Restore();
  });
}

void CZURDLL::ListView(Connection& Cnn, Object& List, const std::string& strSQL) {
  Guarded("DLL.ListView", [&] {
    Recordset rows;
    rows.Open(strSQL, Cnn, CursorType::kKeyset, LockType::kOptimistic);
    const Value list_items = Member(List, "ListItems").Get();
    Object& items = list_items.ToObject();
    Member(items, "Clear").Call();
    if (rows.RecordCount() == 0) return;
    const Object::MemberId add = items.Resolve("Add");
    for (; !rows.EndOfFile(); rows.MoveNext()) AddRowTo(items, add, rows);
  });
}

void CZURDLL::BindTo(Connection& Cnn, const std::string& SQL, const Value::Array& Fields) {
  Guarded("DLL.BinTo", [&] {
    SharedRecordset rows(recordset_);
    rows->MaxRecords(kFirstRowOnly);
    rows->Open(SQL, Cnn, CursorType::kKeyset, LockType::kOptimistic);
    if (rows->RecordCount() != 0) {
      for (std::size_t i = 0; i < Fields.size(); ++i) {
        if (!Fields[i].IsObject()) continue;
        ShowValue(Fields[i].ToObject(), rows->FieldValue(static_cast<int>(i)));
      }
    }
    rows.CloseAndRelease();
  });
}

}  // namespace kel
