#include <QHeaderView>
#include <QPointer>
#include <QTreeWidget>
#include <array>

#include "common/twips.h"
#include "controls/list_items.h"
#include "controls/member_table.h"

namespace kel {
namespace {

// The columns of a view, or one of them.
struct Columns {
  QPointer<QTreeView> view;
  int column = 0;

  QAbstractItemModel& Model() const { return ModelOf(*view); }
  int Count() const { return Model().columnCount(view->rootIndex()); }
  QVariant Text() const { return Model().headerData(column, Qt::Horizontal); }
};

using ColumnMember = MemberOf<Columns>;

void SetText(Columns& columns, const Value& value, Indexes /*indexes*/) {
  if (!columns.Model().setHeaderData(columns.column, Qt::Horizontal, QTextOf(value))) {
    ThrowReadOnly("the text of a column header");
  }
}

void SetWidth(Columns& columns, const Value& value, Indexes /*indexes*/) {
  const int width = PixelsOf(value.ToInt32());
  if (width < 0) ThrowInvalidValue("Width");
  columns.view->setColumnWidth(columns.column, width);
}

constexpr std::array kHeader = {
    ColumnMember{"Text", [](Columns& c, Indexes) -> Value { return ShownText(c.Text()); }, SetText},
    ColumnMember{
        "Width",
        [](Columns& c, Indexes) -> Value { return TwipsOf(c.view->columnWidth(c.column)); },
        SetWidth},
    ColumnMember{"Index", [](Columns& c, Indexes) -> Value { return c.column + 1; }},
};

std::shared_ptr<Object> HeaderOf(QTreeView& view, int column);

// A tree widget begins with a column that nobody has made.
bool IsUntouched(const Columns& columns) {
  const auto* tree = qobject_cast<const QTreeWidget*>(columns.view.data());
  return tree != nullptr && tree->columnCount() == 1 && tree->topLevelItemCount() == 0 &&
         tree->headerItem()->text(0) == QLatin1String("1");
}

Value Add(Columns& columns, Arguments& arguments) {
  const Value& index = ArgumentAt(arguments, 0, "Index");
  const Value& text = ArgumentAt(arguments, 2, "Text");
  const Value& width = ArgumentAt(arguments, 3, "Width");
  const int count = IsUntouched(columns) ? 0 : columns.Count();
  // Columns are added at the end only: rows would not follow one that is put between.
  if (!index.IsMissing() && index.ToInt32() != count + 1) {
    throw Error(control_error::kIndexOutOfBounds, "Index out of bounds");
  }
  EnsureColumns(*columns.view, count + 1);
  Columns added{columns.view, count};
  SetText(added, text.IsMissing() ? Value("") : text, {});
  if (!width.IsMissing()) SetWidth(added, width, {});
  return HeaderOf(*columns.view, count);
}

Value Item(Columns& columns, Indexes indexes) {
  const int index = IndexAt(indexes, 0);
  if (index < 1 || index > columns.Count()) {
    throw Error(control_error::kIndexOutOfBounds, "Index out of bounds");
  }
  return HeaderOf(*columns.view, index - 1);
}

constexpr std::array kHeaders = {
    ColumnMember{"Item", Item},
    ColumnMember{"Count", [](Columns& c, Indexes) -> Value { return c.Count(); }},
    ColumnMember{"Add", nullptr, nullptr, Add},
};

class ColumnsObject : public MemberObject<Columns> {
 public:
  ColumnsObject(QTreeView& view, int column, const MemberTables<Columns>& members,
                const char* type_name)
      : MemberObject(members), columns_{&view, column}, type_name_(type_name) {}

  std::string TypeName() const override { return type_name_; }

 protected:
  Columns& Live() override {
    if (columns_.view == nullptr || columns_.column >= std::max(columns_.Count(), 1)) {
      throw Error(error_number::kObjectNotSet, "the column is gone");
    }
    return columns_;
  }
  std::string Called() const override { return type_name_; }

 private:
  Columns columns_;
  const char* type_name_;
};

std::shared_ptr<Object> HeaderOf(QTreeView& view, int column) {
  return std::make_shared<ColumnsObject>(view, column, MemberTables<Columns>{{kHeader}, "Text"},
                                         "ColumnHeader");
}

}  // namespace

std::shared_ptr<Object> ColumnHeadersOf(QTreeView& view) {
  return std::make_shared<ColumnsObject>(view, 0, MemberTables<Columns>{{kHeaders}, "Item"},
                                         "ColumnHeaders");
}

}  // namespace kel
