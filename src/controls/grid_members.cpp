// MSFlexGrid: rows, columns and what is current or selected.

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <array>
#include <limits>

#include "common/twips.h"
#include "controls/table_grid.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

// Published values of HighLight.
constexpr int kHighlightNever = 0;
constexpr int kHighlightWithFocus = 2;

constexpr const char* kHighlightProperty = "kelHighLight";
constexpr const char* kPaletteProperty = "kelPalette";  // from before the highlight was taken away

TableGrid Grid(Control& control) { return TableGrid(control.As<QTableView>()); }

void SetRows(Control& control, const Value& value, Indexes /*indexes*/) {
  const TableGrid grid = Grid(control);
  grid.Rows(NumberWithin(value, grid.FixedRows(), std::numeric_limits<int>::max(), "Rows"));
}

// One heading line at most, and no headings beside the rows.
void SetFixedRows(Control& control, const Value& value, Indexes /*indexes*/) {
  const int rows = NumberWithin(value, 0, 1, "FixedRows");
  Grid(control).View().horizontalHeader()->setHidden(rows == 0);
}

// The first and the last row or column of the selected range that holds the current cell.
struct Extent {
  int first;
  int last;
};

template <Qt::Orientation Direction>
Extent SelectedExtent(const QTableView& view, int otherwise) {
  const QModelIndex current = view.currentIndex();
  for (const QItemSelectionRange& range : view.selectionModel()->selection()) {
    if (!current.isValid() || !range.contains(current)) continue;
    return Direction == Qt::Vertical ? Extent{range.top(), range.bottom()}
                                     : Extent{range.left(), range.right()};
  }
  return {otherwise, otherwise};
}

// The end of a selection that is not the current cell.
Value RowSel(Control& control, Indexes /*indexes*/) {
  const TableGrid grid = Grid(control);
  const int row = grid.Row() - grid.FixedRows();
  const auto [first, last] = SelectedExtent<Qt::Vertical>(grid.View(), row);
  return (row == first ? last : first) + grid.FixedRows();
}

Value ColSel(Control& control, Indexes /*indexes*/) {
  const TableGrid grid = Grid(control);
  const int col = grid.Col();
  const auto [first, last] = SelectedExtent<Qt::Horizontal>(grid.View(), col);
  return col == first ? last : first;
}

// From the header no cells of the model are selected.
void SelectTo(const TableGrid& grid, int row, int col) {
  const QModelIndex from = grid.View().currentIndex();
  if (row == -1 && !from.isValid()) return;
  const QModelIndex to = grid.Cell(row, col);
  if (!from.isValid() || !to.isValid()) return;
  const QItemSelection range(
      from.sibling(std::min(from.row(), to.row()), std::min(from.column(), to.column())),
      from.sibling(std::max(from.row(), to.row()), std::max(from.column(), to.column())));
  grid.View().selectionModel()->select(range, QItemSelectionModel::ClearAndSelect);
}

void SetRowSel(Control& control, const Value& value, Indexes indexes) {
  SelectTo(Grid(control), value.ToInt32(), ColSel(control, indexes).ToInt32());
}

void SetColSel(Control& control, const Value& value, Indexes indexes) {
  SelectTo(Grid(control), RowSel(control, indexes).ToInt32(), value.ToInt32());
}

Value HighLight(Control& control, Indexes /*indexes*/) {
  const QVariant kept = control.Widget().property(kHighlightProperty);
  return kept.isValid() ? kept.toInt() : 1;
}

// Without a highlight the selected cells look like all others.
void SetHighLight(Control& control, const Value& value, Indexes /*indexes*/) {
  QWidget& widget = control.Widget();
  const int high_light = NumberWithin(value, kHighlightNever, kHighlightWithFocus, "HighLight");
  widget.setProperty(kHighlightProperty, high_light);
  const QVariant before = widget.property(kPaletteProperty);
  if (high_light == kHighlightNever && !before.isValid()) {
    QPalette palette = widget.palette();
    widget.setProperty(kPaletteProperty, palette);
    palette.setBrush(QPalette::Highlight, palette.brush(QPalette::Base));
    palette.setBrush(QPalette::HighlightedText, palette.brush(QPalette::Text));
    widget.setPalette(palette);
  } else if (high_light != kHighlightNever && before.isValid()) {
    widget.setPalette(before.value<QPalette>());
    widget.setProperty(kPaletteProperty, {});
  }
}

// The cells of one text are parted by tabs.
Value AddRow(Control& control, Arguments& arguments) {
  const QString cells = QTextOf(ArgumentAt(arguments, 0, "Item"));
  const Value& index = ArgumentAt(arguments, 1, "Index");
  const int row = index.IsMissing() ? -1 : NumberWithin(index, 0, Grid(control).Rows(), "Index");
  Grid(control).AddRow(cells.split(QLatin1Char('\t')), row);
  return {};
}

Value TopRow(Control& control, Indexes /*indexes*/) {
  const TableGrid grid = Grid(control);
  return std::max(grid.View().rowAt(0), 0) + grid.FixedRows();
}

void SetTopRow(Control& control, const Value& value, Indexes /*indexes*/) {
  const TableGrid grid = Grid(control);
  const QModelIndex first = grid.Cell(value.ToInt32(), grid.Col());
  grid.View().scrollTo(first, QAbstractItemView::PositionAtTop);
}

void SetLeftCol(Control& control, const Value& value, Indexes /*indexes*/) {
  const TableGrid grid = Grid(control);
  const int col = NumberWithin(value, 0, grid.Cols() - 1, "LeftCol");
  const QHeaderView& header = *grid.View().horizontalHeader();
  const bool by_items = grid.View().horizontalScrollMode() == QAbstractItemView::ScrollPerItem;
  grid.View().horizontalScrollBar()->setValue(by_items ? header.visualIndex(col)
                                                       : header.sectionPosition(col));
}

// -1 is the width that columns have by default.
int ColumnWidth(const QTableView& view, const Value& twips) {
  const int width = twips.ToInt32();
  return width < 0 ? view.horizontalHeader()->defaultSectionSize() : PixelsOf(width);
}

Value ColWidth(Control& control, Indexes indexes) {
  const int col = IndexAt(indexes, 0);
  if (col < 0 || col >= Grid(control).Cols()) ThrowOutOfRange();
  return TwipsOf(Grid(control).View().columnWidth(col));
}

// A width of 0 hides a column. Column -1 is all of them.
void SetColWidth(Control& control, const Value& value, Indexes indexes) {
  const TableGrid grid = Grid(control);
  const int col = IndexAt(indexes, 0);
  if (col < -1 || col >= grid.Cols()) ThrowOutOfRange();
  const int width = ColumnWidth(grid.View(), value);
  for (int i = std::max(col, 0); i <= (col == -1 ? grid.Cols() - 1 : col); ++i) {
    grid.View().setColumnHidden(i, width == 0);
    if (width > 0) grid.View().setColumnWidth(i, width);
  }
}

Value RowHeight(Control& control, Indexes indexes) {
  const TableGrid grid = Grid(control);
  const QModelIndex cell = grid.Cell(IndexAt(indexes, 0), 0);
  return TwipsOf(cell.isValid() ? grid.View().rowHeight(cell.row())
                                : grid.View().horizontalHeader()->height());
}

void SetRowHeight(Control& control, const Value& value, Indexes indexes) {
  const TableGrid grid = Grid(control);
  const QModelIndex cell = grid.Cell(IndexAt(indexes, 0), 0);
  const int height = PixelsOf(value.ToInt32());
  if (height < 0) ThrowInvalidValue("RowHeight");
  if (!cell.isValid()) {
    grid.View().horizontalHeader()->setFixedHeight(height);
    return;
  }
  grid.View().setRowHidden(cell.row(), height == 0);
  if (height > 0) grid.View().setRowHeight(cell.row(), height);
}

constexpr std::array kGrid = {
    ControlMember{"Rows", [](Control& c, Indexes) -> Value { return Grid(c).Rows(); }, SetRows},
    ControlMember{"Cols", [](Control& c, Indexes) -> Value { return Grid(c).Cols(); },
                  [](Control& c, const Value& v, Indexes) {
                    Grid(c).Cols(NumberWithin(v, 0, std::numeric_limits<int>::max(), "Cols"));
                  }},
    ControlMember{"FixedRows", [](Control& c, Indexes) -> Value { return Grid(c).FixedRows(); },
                  SetFixedRows},
    ControlMember{"FixedCols", [](Control&, Indexes) -> Value { return 0; },
                  [](Control&, const Value& v, Indexes) { NumberWithin(v, 0, 0, "FixedCols"); }},
    ControlMember{"Row", [](Control& c, Indexes) -> Value { return Grid(c).Row(); },
                  [](Control& c, const Value& v, Indexes) { Grid(c).Row(v.ToInt32()); }},
    ControlMember{"Col", [](Control& c, Indexes) -> Value { return Grid(c).Col(); },
                  [](Control& c, const Value& v, Indexes) { Grid(c).Col(v.ToInt32()); }},
    ControlMember{"RowSel", RowSel, SetRowSel},
    ControlMember{"ColSel", ColSel, SetColSel},
    ControlMember{"HighLight", HighLight, SetHighLight},
    ControlMember{"ColWidth", ColWidth, SetColWidth},
    ControlMember{"RowHeight", RowHeight, SetRowHeight},
    ControlMember{"TopRow", TopRow, SetTopRow},
    ControlMember{
        "LeftCol",
        [](Control& c, Indexes) -> Value { return std::max(Grid(c).View().columnAt(0), 0); },
        SetLeftCol},
    ControlMember{
        "Redraw", [](Control& c, Indexes) -> Value { return c.Widget().updatesEnabled(); },
        [](Control& c, const Value& v, Indexes) { c.Widget().setUpdatesEnabled(v.ToBoolean()); }},
    ControlMember{"AddItem", nullptr, nullptr, AddRow},
    ControlMember{"RemoveItem", nullptr, nullptr,
                  [](Control& c, Arguments& arguments) -> Value {
                    Grid(c).RemoveRow(ArgumentAt(arguments, 0, "Index").ToInt32());
                    return {};
                  }},
    ControlMember{"Clear", nullptr, nullptr,
                  [](Control& c, Arguments&) -> Value {
                    Grid(c).Clear();
                    return {};
                  }},
};

}  // namespace

ControlMembers GridMembers() { return kGrid; }

}  // namespace kel
