// MSFlexGrid: the cells.

#include <QBrush>
#include <QFont>
#include <array>

#include "common/ole_color.h"
#include "controls/colors.h"
#include "controls/table_grid.h"
#include "controls/text_alignment.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

// A system colour is kept beside what it looks like: reports know fixed rows by theirs.
constexpr int kOleColorRole = Qt::UserRole + 0x4B10;  // less the role that it belongs to

TableGrid Grid(Control& control) { return TableGrid(control.As<QTableView>()); }

Value TextMatrix(Control& control, Indexes indexes) {
  const int row = IndexAt(indexes, 0);
  return ShownText(Grid(control).Data(row, IndexAt(indexes, 1), Qt::DisplayRole));
}

void SetTextMatrix(Control& control, const Value& value, Indexes indexes) {
  const int row = IndexAt(indexes, 0);
  Grid(control).Data(row, IndexAt(indexes, 1), Qt::EditRole, QTextOf(value));
}

QVariant CurrentData(Control& control, int role) {
  const TableGrid grid = Grid(control);
  return grid.Data(grid.Row(), grid.Col(), role);
}

void SetCurrentData(Control& control, int role, const QVariant& data) {
  const TableGrid grid = Grid(control);
  grid.Data(grid.Row(), grid.Col(), role, data);
}

// A grid in which no cell is current can be asked for its text like any other control.
Value Text(Control& control, Indexes /*indexes*/) {
  if (Grid(control).Row() < 0) return "";
  return ShownText(CurrentData(control, Qt::DisplayRole));
}

void SetText(Control& control, const Value& value, Indexes /*indexes*/) {
  SetCurrentData(control, Qt::EditRole, QTextOf(value));
}

// Headings that say nothing stand as the first row of their column.
Value ColAlignment(Control& control, Indexes indexes) {
  const TableGrid grid = Grid(control);
  const int col = IndexAt(indexes, 0);
  const int row = std::max(grid.Row(), 0);
  QVariant alignment = grid.Rows() > row ? grid.Data(row, col, Qt::TextAlignmentRole) : QVariant();
  if (!alignment.isValid() && row < grid.FixedRows() && grid.Rows() > grid.FixedRows()) {
    alignment = grid.Data(grid.FixedRows(), col, Qt::TextAlignmentRole);
  }
  return CellAlignmentNumber(alignment);
}

template <int Role>
Value CellColor(Control& control, Indexes /*indexes*/) {
  const TableGrid grid = Grid(control);
  const int row = grid.Row();
  const QVariant brush = grid.Data(row, grid.Col(), Role);
  if (!brush.isValid()) {
    if (Role == Qt::ForegroundRole) return ColorValue(system_color::kWindowText);
    return ColorValue(row < grid.FixedRows() ? system_color::kButtonFace
                                             : system_color::kWindowBackground);
  }
  const QColor shown = brush.value<QBrush>().color();
  const QVariant kept = grid.Data(row, grid.Col(), kOleColorRole - Role);
  const OleColor color = kept.isValid() ? kept.toUInt() : 0;
  const bool still = kept.isValid() && ToQColor(color, grid.View().palette()) == shown;
  return ColorValue(still ? color : ToOleColor(shown));
}

template <int Role>
void SetCellColor(Control& control, const Value& value, Indexes /*indexes*/) {
  const OleColor color = ColorOf(value);
  SetCurrentData(control, Role, QBrush(ToQColor(color, control.Widget().palette())));
  const TableGrid grid = Grid(control);
  grid.TryData(grid.Row(), grid.Col(), kOleColorRole - Role, color);
}

template <bool (QFont::*Is)() const>
Value CellFont(Control& control, Indexes /*indexes*/) {
  const QVariant font = CurrentData(control, Qt::FontRole);
  return font.isValid() && (font.value<QFont>().*Is)();
}

template <void (QFont::*Set)(bool)>
void SetCellFont(Control& control, const Value& value, Indexes /*indexes*/) {
  const QVariant own = CurrentData(control, Qt::FontRole);
  QFont font = own.isValid() ? own.value<QFont>() : control.Widget().font();
  (font.*Set)(value.ToBoolean());
  SetCurrentData(control, Qt::FontRole, font);
}

Value RowData(Control& control, Indexes indexes) {
  const QVariant data = Grid(control).Data(IndexAt(indexes, 0), 0, Qt::UserRole);
  return data.isValid() ? ValueOf(data) : Value(0);
}

constexpr std::array kCells = {
    ControlMember{"TextMatrix", TextMatrix, SetTextMatrix},
    ControlMember{"Text", Text, SetText},
    ControlMember{"ColAlignment", ColAlignment,
                  [](Control& c, const Value& v, Indexes i) {
                    Grid(c).ColAlignment(IndexAt(i, 0), CellAlignmentOf(v));
                  }},
    ControlMember{"CellAlignment",
                  [](Control& c, Indexes) -> Value {
                    return CellAlignmentNumber(CurrentData(c, Qt::TextAlignmentRole));
                  },
                  [](Control& c, const Value& v, Indexes) {
                    SetCurrentData(c, Qt::TextAlignmentRole, CellAlignmentOf(v));
                  }},
    ControlMember{"CellBackColor", CellColor<Qt::BackgroundRole>, SetCellColor<Qt::BackgroundRole>},
    ControlMember{"CellForeColor", CellColor<Qt::ForegroundRole>, SetCellColor<Qt::ForegroundRole>},
    ControlMember{"CellFontBold", CellFont<&QFont::bold>, SetCellFont<&QFont::setBold>},
    ControlMember{"CellFontItalic", CellFont<&QFont::italic>, SetCellFont<&QFont::setItalic>},
    ControlMember{"CellFontUnderline", CellFont<&QFont::underline>,
                  SetCellFont<&QFont::setUnderline>},
    ControlMember{"RowData", RowData,
                  [](Control& c, const Value& v, Indexes i) {
                    Grid(c).Data(IndexAt(i, 0), 0, Qt::UserRole, v.ToInt32());
                  }},
};

}  // namespace

ControlMembers GridCellMembers() { return kCells; }

}  // namespace kel
