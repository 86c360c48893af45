#include "platform/qt/model_grid.h"

#include <QFont>
#include <QModelIndex>
#include <QVariant>
#include <utility>

#include "common/error.h"
#include "common/number_text.h"
#include "common/text_cells.h"

namespace kel {
namespace {

[[noreturn]] void ThrowOutOfRange() {
  throw Error(error_number::kSubscriptOutOfRange, "Subscript out of range");
}

std::string TextOf(const QVariant& shown) {
  // QVariant would write 100000000.0 with an exponent.
  if (shown.typeId() == QMetaType::Double) return NumberText(shown.toDouble());
  return shown.toString().toStdString();
}

// Models return the flags as themselves or as a plain number.
bool IsRight(const QVariant& alignment) {
  const auto flags = alignment.metaType() == QMetaType::fromType<Qt::Alignment>()
                         ? alignment.value<Qt::Alignment>()
                         : Qt::Alignment(alignment.toInt());
  return flags.testFlag(Qt::AlignRight);
}

}  // namespace

ModelGrid::ModelGrid(QAbstractItemModel& model, std::string caption)
    : model_(model),
      caption_(std::move(caption)),
      length_known_(!model.canFetchMore({})),
      texts_(static_cast<std::size_t>(model.columnCount())) {}

bool ModelGrid::SetRow(std::int32_t row) {
  if (row < 0) ThrowOutOfRange();
  if (!HasRow(row)) {
    if (length_known_) ThrowOutOfRange();
    return false;
  }
  row_ = row;
  return true;
}

// Row n of the grid is row n - 1 of the model.
bool ModelGrid::HasRow(std::int32_t row) {
  int known = model_.rowCount();
  while (known < row && model_.canFetchMore({})) {
    model_.fetchMore({});
    if (model_.rowCount() == known) break;
    known = model_.rowCount();
  }
  return row <= known;
}

void ModelGrid::SetCol(std::int32_t col) {
  RequireColumn(col);
  col_ = col;
}

std::uint32_t ModelGrid::CellBackColor() {
  return row_ == 0 ? system_color::kButtonFace : system_color::kWindowBackground;
}

CellFont ModelGrid::Font() {
  const QVariant font = Data(row_, col_, Qt::FontRole);
  if (font.typeId() != QMetaType::QFont) return {};
  return {font.value<QFont>().bold(), font.value<QFont>().underline()};
}

std::string_view ModelGrid::TextMatrix(std::int32_t row, std::int32_t col) {
  RequireColumn(col);
  if (row < 0 || !HasRow(row)) ThrowOutOfRange();
  std::string& text = texts_.at(static_cast<std::size_t>(col));
  text = TextOf(Data(row, col, Qt::DisplayRole));
  return text;
}

int ModelGrid::ColAlignment(std::int32_t col) {
  RequireColumn(col);
  QVariant alignment = Data(row_, col, Qt::TextAlignmentRole);
  if (row_ == 0 && !alignment.isValid() && HasRow(1)) {
    alignment = Data(1, col, Qt::TextAlignmentRole);
  }
  return IsRight(alignment) ? kAlignRight : kAlignLeft;
}

void ModelGrid::RequireColumn(std::int32_t col) const {
  if (col < 0 || static_cast<std::size_t>(col) >= texts_.size()) ThrowOutOfRange();
}

QVariant ModelGrid::Data(std::int32_t row, std::int32_t col, int role) const {
  if (row == 0) return model_.headerData(col, Qt::Horizontal, role);
  return model_.index(row - 1, col).data(role);
}

}  // namespace kel
