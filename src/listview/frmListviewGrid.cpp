#include "listview/frmListviewGrid.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <algorithm>
#include <limits>
#include <vector>

#include "common/text_cells.h"
#include "common/twips.h"
#include "data/row_sort.h"
#include "listview/list_report.h"

namespace kel {
namespace {

constexpr qsizetype kInitialCharacters = 40;  // of a column, at most
constexpr int kInitialRows = 50;              // that are looked at for it
// Numbers grow down the list, and one that is cut is a wrong one.
constexpr const char* kInitialNumber = "000,000,000.00";
constexpr qsizetype kAllCharacters = std::numeric_limits<qsizetype>::max();

std::vector<SortField> SortOf(const Recordset& records) {
  std::vector<ColumnInfo> fields;
  for (int i = 0; i < records.FieldCount(); ++i) fields.push_back(records.Field(i));
  return ParseSort(records.Sort(), fields);
}

}  // namespace

ListGrid::ListGrid(ListModel& list, QWidget* parent)
    : QWidget(parent),
      rows_(list, this),
      table_(new ListTable(rows_, this)),
      bar_(new QScrollBar(Qt::Vertical, this)) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addWidget(table_, 1);
  row->addWidget(bar_);
  bar_->setObjectName(QStringLiteral("VS"));
  bar_->setAccessibleName(QStringLiteral("Scroll records"));
  setFocusProxy(table_);
  Connect();
}

void ListGrid::Connect() {
  connect(table_, &ListTable::Resized, this, &ListGrid::Update);
  connect(table_, &ListTable::Wheeled, this, [this](int rows) { ScrollTo(rows_.Top() + rows); });
  connect(bar_, &QScrollBar::valueChanged, this,
          [this](int value) { ScrollTo(value * rows_per_step_); });
  connect(&table_->Headings(), &QHeaderView::sectionResized, this, &ListGrid::StoreColumns);
}

void ListGrid::Rebuild() {
  table_->Cells().Cancel();
  table_->ClearSelection();
  rows_.Rebuild();
  for (int i = 0; i < rows_.columnCount(); ++i) {
    table_->setColumnHidden(i, false);
  }
  Update();
  SetInitialWidths();
  table_->CurrentColumn(table_->ColumnBeside(-1, 1));
  RevealRow();
  ShowSort();
}

void ListGrid::Follow(const RecordsetNews& news) {
  // What is being typed belongs to the record that was the current one.
  const QModelIndex edited = table_->currentIndex();
  const bool elsewhere = rows_.Top() + edited.row() != rows_.CurrentRow();
  if (news.rows || (news.moved && elsewhere)) table_->Cells().Cancel();
  Update();
  if (news.moved || news.rows) RevealRow();
  if (news.rows) ShowSort();
}

// The rows on show, the bar and the mark of the current record, as the list is by now.
void ListGrid::Update() {
  const int whole = table_->WholeRows();
  const std::int64_t last_top = std::max<std::int64_t>(rows_.Rows() - whole, 0);
  const std::int64_t top = std::min(rows_.Top(), last_top);
  rows_.ShowRows(top, whole + 1);
  rows_per_step_ = last_top / std::numeric_limits<int>::max() + 1;
  {
    const QSignalBlocker quiet(bar_);
    bar_->setRange(0, static_cast<int>(last_top / rows_per_step_));
    bar_->setPageStep(whole);
    bar_->setValue(static_cast<int>(top / rows_per_step_));
  }
  bar_->update();
  table_->ShowCurrent();
}

void ListGrid::ScrollTo(std::int64_t top) {
  table_->Cells().Finish();
  const std::int64_t last_top = std::max<std::int64_t>(rows_.Rows() - table_->WholeRows(), 0);
  rows_.ShowRows(std::clamp<std::int64_t>(top, 0, last_top), table_->WholeRows() + 1);
  Update();
}

void ListGrid::RevealRow() {
  const std::int64_t row = rows_.CurrentRow();
  if (row < 0 || row >= rows_.Rows()) return;
  const int whole = table_->WholeRows();
  if (row < rows_.Top()) {
    ScrollTo(row);
  } else if (row >= rows_.Top() + whole) {
    ScrollTo(row - whole + 1);
  }
}

// The arrow of the recordset's own order, whoever set it.
void ListGrid::ShowSort() {
  std::vector<SortField> sort;
  try {
    if (rows_.Fits()) sort = SortOf(*rows_.List().Records());
  } catch (const Error&) {
    // An order that is told in other words than these has no arrow.
  }
  if (sort.empty()) return table_->Headings().setSortIndicator(-1, Qt::AscendingOrder);
  table_->Headings().setSortIndicator(
      static_cast<int>(sort.front().column),
      sort.front().descending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void ListGrid::ColumnsPrepared() {
  // A statement that is run again may have other fields.
  if (rows_.columnCount() != static_cast<int>(rows_.List().Columns().size())) return Rebuild();
  StoreColumns();
  rows_.TellHeadings();
  ShowSort();
  Update();
}

void ListGrid::ShowRecords(bool shown) {
  table_->setVisible(shown);
  bar_->setVisible(shown);
}

void ListGrid::HideColumn() {
  const int column = table_->CurrentColumn();
  if (column < 0) return;
  table_->ClearSelection();
  table_->setColumnHidden(column, true);
  const int right = table_->ColumnBeside(column, 1);
  table_->CurrentColumn(right >= 0 ? right : table_->ColumnBeside(column, -1));
  StoreColumns();
}

void ListGrid::SetInitialWidths() {
  const int number = ListCells::CellWidth(*table_, QLatin1String(kInitialNumber));
  for (int i = 0; i < rows_.columnCount(); ++i) {
    const bool is_number = rows_.Alignment(i).testFlag(Qt::AlignRight);
    const int width = WidthFor(i, kInitialRows, kInitialCharacters);
    table_->setColumnWidth(i, is_number ? std::max(width, number) : width);
  }
  StoreColumns();
}

void ListGrid::AlignColumns() {
  table_->setUpdatesEnabled(false);
  for (int i = 0; i < rows_.columnCount(); ++i) {
    if (table_->isColumnHidden(i)) continue;
    table_->setColumnWidth(i, WidthFor(i, rows_.rowCount(), kAllCharacters));
  }
  StoreColumns();
  table_->setUpdatesEnabled(true);
}

int ListGrid::WidthFor(int column, int rows, qsizetype most_characters) const {
  int width =
      std::max(table_->Headings().WholeWidth(column), table_->Headings().minimumSectionSize());
  for (int row = 0; row < rows; ++row) {
    const QString text = rows_.CellText(row, column).left(most_characters);
    // Reports are laid out by the widths on the screen: what fits here is to fit there.
    const Twips printed = kTwipsPerCharacter * CellWidth(text.toStdString());
    width = std::max({width, ListCells::CellWidth(*table_, text), PixelsOf(printed)});
  }
  return width;
}

// Reports are laid out by them.
void ListGrid::StoreColumns() {
  std::vector<ListColumn>& columns = rows_.List().Columns();
  for (int i = 0; i < rows_.columnCount() && i < static_cast<int>(columns.size()); ++i) {
    ListColumn& column = columns[static_cast<std::size_t>(i)];
    column.visible = !table_->isColumnHidden(i);
    if (column.visible) column.width = TwipsOf(table_->columnWidth(i));
  }
}

}  // namespace kel
