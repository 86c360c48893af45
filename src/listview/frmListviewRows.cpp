#include "listview/frmListviewRows.h"

#include <algorithm>
#include <exception>

namespace kel {
namespace {

constexpr qsizetype kMostShown = 500;  // characters of a cell

// ADO's AbsolutePosition where no record is the current one.
constexpr std::int64_t kAtEndOfFile = -3;

QString OnOneLine(QString text) {
  text.replace(QLatin1String("\r\n"), QLatin1String(" "));
  for (QChar& c : text) {
    const bool breaks = c == '\n' || c == '\r' || c == '\t' || c == QChar::LineSeparator ||
                        c == QChar::ParagraphSeparator;
    if (breaks) c = ' ';
  }
  return text;
}

}  // namespace

ListRows::ListRows(ListModel& list, QObject* parent) : QAbstractTableModel(parent), list_(list) {}

bool ListRows::IsOpen() const {
  const Recordset* const records = list_.Records();
  return records != nullptr && records->State() == ObjectState::kOpen;
}

bool ListRows::Fits() const {
  if (!IsOpen()) return false;
  const Recordset& records = *list_.Records();
  const std::vector<ListColumn>& columns = list_.Columns();
  if (records.FieldCount() != static_cast<int>(columns.size())) return false;
  for (int i = 0; i < records.FieldCount(); ++i) {
    const ListColumn& column = columns[static_cast<std::size_t>(i)];
    const ColumnInfo& field = records.Field(i);
    if (field.type != column.type || column.caption.rfind(field.name, 0) != 0) return false;
  }
  return true;
}

std::int64_t ListRows::Rows() const {
  if (!IsOpen() || list_.Records()->FieldCount() < columns_) return 0;
  return list_.Rows();
}

std::int64_t ListRows::CurrentRow() const {
  if (!IsOpen()) return -1;
  const std::int64_t position = list_.Records()->AbsolutePosition();
  if (position == kAtEndOfFile) return Rows();
  return position > 0 ? position - 1 : -1;
}

void ListRows::ShowRows(std::int64_t top, int most) {
  top_ = top;
  const int rows = static_cast<int>(std::clamp<std::int64_t>(Rows() - top, 0, most));
  if (rows > rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  } else if (rows < rows_) {
    beginRemoveRows({}, rows, rows_ - 1);
    rows_ = rows;
    endRemoveRows();
  }
}

void ListRows::Rebuild() {
  beginResetModel();
  top_ = 0;
  rows_ = 0;
  columns_ = static_cast<int>(list_.Columns().size());
  endResetModel();
}

void ListRows::TellHeadings() {
  if (columns_ > 0) emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
}

std::string ListRows::Text(int row, int column) const {
  std::string text;
  const std::int64_t seen = top_ + row;
  // The recordset may have been changed since its rows were counted.
  if (column >= columns_ || seen >= Rows()) return text;
  try {
    list_.AppendText(seen, column, text);
  } catch (const std::exception&) {
    text.clear();  // nobody can be told while a cell is drawn
  }
  return text;
}

QString ListRows::CellText(int row, int column) const {
  const std::string whole = Text(row, column);
  constexpr qsizetype kMostBytes = 4 * (kMostShown + 1);
  const QString begin =
      QString::fromUtf8(whole.data(), std::min(static_cast<qsizetype>(whole.size()), kMostBytes));
  return OnOneLine(begin.size() > kMostShown ? begin.left(kMostShown - 1) + QChar(0x2026) : begin);
}

QString ListRows::FullText(int row, int column) const {
  return QString::fromStdString(Text(row, column));
}

Qt::Alignment ListRows::Alignment(int column) const {
  switch (list_.Columns()[static_cast<std::size_t>(column)].Side()) {
    case gridRight:
      return Qt::AlignRight | Qt::AlignVCenter;
    case gridCenter:
      return Qt::AlignHCenter | Qt::AlignVCenter;
    default:
      return Qt::AlignLeft | Qt::AlignVCenter;
  }
}

int ListRows::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int ListRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant ListRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::DisplayRole) return CellText(index.row(), index.column());
  if (role == Qt::TextAlignmentRole) return QVariant(Alignment(index.column()));
  return {};
}

QVariant ListRows::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical || section < 0 || section >= columns_) return {};
  const ListColumn& column = list_.Columns()[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) return OnOneLine(QString::fromStdString(column.caption));
  if (role == Qt::TextAlignmentRole) return QVariant(Alignment(section));
  return {};
}

Qt::ItemFlags ListRows::flags(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const bool locked = list_.Columns()[static_cast<std::size_t>(index.column())].locked;
  const Qt::ItemFlags shown = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  return locked ? shown : shown | Qt::ItemIsEditable;
}

}  // namespace kel
