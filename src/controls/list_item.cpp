#include <QBrush>
#include <QFont>
#include <QPersistentModelIndex>
#include <QPointer>
#include <array>

#include "controls/colors.h"
#include "controls/item_list.h"
#include "controls/list_item_roles.h"
#include "controls/list_items.h"
#include "controls/member_table.h"

namespace kel {
namespace {

// A row of a view.
struct ListItem {
  QPointer<QTreeView> view;
  QPersistentModelIndex row;  // of column 0

  QAbstractItemModel& Model() const { return ModelOf(*view); }
  QVariant Data(int role, int column = 0) const {
    return row.sibling(row.row(), column).data(role);
  }
  void Set(int role, const QVariant& value, int column = 0) const {
    SetItem(Model(), row.sibling(row.row(), column), value, role);
  }
};

using ItemMember = MemberOf<ListItem>;

// The first column is the item itself.
int SubItemAt(Indexes indexes) {
  constexpr int kMostColumns = 32767;
  const int column = IndexAt(indexes, 0);
  if (column < 1 || column > kMostColumns) ThrowInvalidValue("the index of SubItems");
  return column;
}

void SetSubItem(ListItem& item, const Value& value, Indexes indexes) {
  const int column = SubItemAt(indexes);
  EnsureColumns(*item.view, column + 1);
  item.Set(Qt::EditRole, QTextOf(value), column);
}

void SetSelected(ListItem& item, const Value& value, Indexes /*indexes*/) {
  if (!value.ToBoolean()) {
    item.view->selectionModel()->select(item.row,
                                        QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
  } else if (item.view->selectionMode() == QAbstractItemView::SingleSelection) {
    item.view->setCurrentIndex(item.row);
  } else {
    item.view->selectionModel()->select(item.row,
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
  }
}

Value IsBold(ListItem& item, Indexes /*indexes*/) {
  return item.Data(Qt::FontRole).value<QFont>().bold();
}

void SetBold(ListItem& item, const Value& value, Indexes /*indexes*/) {
  const QVariant own = item.Data(Qt::FontRole);
  QFont font = own.isValid() ? own.value<QFont>() : item.view->font();
  font.setBold(value.ToBoolean());
  item.Set(Qt::FontRole, font);
}

Value ForeColor(ListItem& item, Indexes /*indexes*/) {
  const QVariant own = item.Data(Qt::ForegroundRole);
  const QColor color =
      own.isValid() ? own.value<QBrush>().color() : item.view->palette().color(QPalette::Text);
  return ColorValue(ToOleColor(color));
}

constexpr std::array kListItem = {
    ItemMember{"Text",
               [](ListItem& i, Indexes) -> Value { return ShownText(i.Data(Qt::DisplayRole)); },
               [](ListItem& i, const Value& v, Indexes) { i.Set(Qt::EditRole, QTextOf(v)); }},
    ItemMember{"SubItems",
               [](ListItem& i, Indexes indexes) -> Value {
                 return ShownText(i.Data(Qt::DisplayRole, SubItemAt(indexes)));
               },
               SetSubItem},
    ItemMember{"Key", [](ListItem& i, Indexes) { return ValueOf(i.Data(kListKeyRole).toString()); },
               [](ListItem& i, const Value& v, Indexes) { i.Set(kListKeyRole, QTextOf(v)); }},
    ItemMember{"Tag", [](ListItem& i, Indexes) { return ValueOf(i.Data(kListTagRole).toString()); },
               [](ListItem& i, const Value& v, Indexes) { i.Set(kListTagRole, QTextOf(v)); }},
    ItemMember{"Index", [](ListItem& i, Indexes) -> Value { return i.row.row() + 1; }},
    ItemMember{
        "Selected",
        [](ListItem& i, Indexes) -> Value { return i.view->selectionModel()->isSelected(i.row); },
        SetSelected},
    ItemMember{"Checked",
               [](ListItem& i, Indexes) -> Value {
                 return i.Data(Qt::CheckStateRole).toInt() == Qt::Checked;
               },
               [](ListItem& i, const Value& v, Indexes) {
                 i.Set(Qt::CheckStateRole, v.ToBoolean() ? Qt::Checked : Qt::Unchecked);
               }},
    ItemMember{"Bold", IsBold, SetBold},
    ItemMember{"ForeColor", ForeColor,
               [](ListItem& i, const Value& v, Indexes) {
                 const QColor color = ToQColor(ColorOf(v), i.view->palette());
                 i.Set(Qt::ForegroundRole, QBrush(color));
               }},
};

class ListItemObject : public MemberObject<ListItem> {
 public:
  ListItemObject(QTreeView& view, const QModelIndex& row)
      : MemberObject({{kListItem}, "Text"}), item_{&view, row} {}

  std::string TypeName() const override { return "ListItem"; }

  bool IsSame(const Object& other) const override {
    const auto* item = dynamic_cast<const ListItemObject*>(&other);
    return item != nullptr && item_.row.isValid() && item->item_.row == item_.row;
  }

  const QPersistentModelIndex& Row() const { return item_.row; }

 protected:
  ListItem& Live() override {
    if (item_.view == nullptr || !item_.row.isValid()) {
      throw Error(error_number::kObjectNotSet, "the list item is gone");
    }
    return item_;
  }
  std::string Called() const override { return "ListItem"; }

 private:
  ListItem item_;
};

}  // namespace

std::shared_ptr<Object> ListItemOf(QTreeView& view, const QModelIndex& row) {
  return std::make_shared<ListItemObject>(view, row);
}

QModelIndex RowOf(const Object& item, const QTreeView& view) {
  const auto* list_item = dynamic_cast<const ListItemObject*>(&item);
  if (list_item == nullptr || list_item->Row().model() != view.model()) {
    throw Error(error_number::kTypeMismatch, "not an item of this list");
  }
  return list_item->Row();
}

}  // namespace kel
