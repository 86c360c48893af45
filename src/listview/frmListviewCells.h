// The cells of the list window's grid: how they are drawn and edited.
#pragma once

#include <QPointer>
#include <QStyledItemDelegate>
#include <algorithm>

#include "common/error.h"
#include "listview/frmListviewRows.h"

namespace kel {

/// The columns that are selected, from the one where the selection began to the one where it ends;
/// none where both are -1.
struct ColumnSelection {
  int anchor = -1;
  int end = -1;

  int First() const { return std::min(anchor, end); }
  int Last() const { return std::max(anchor, end); }
  bool Has(int column) const { return column >= 0 && First() <= column && column <= Last(); }
  bool IsEmpty() const { return anchor < 0; }
};

/// Edits a text in a line; one with line breaks, or a long one, in a box of several lines, in which
/// Shift+Enter begins a new one.
class ListCells : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// Both outlive it.
  ListCells(const ListRows& rows, const ColumnSelection& selection, QObject* parent);

  bool IsEditing() const { return editor_ != nullptr; }
  /// Takes over what was typed, and ends the edit.
  void Finish();
  /// Ends the edit without that.
  void Cancel();

  /// The width that a text takes in a cell.
  static int CellWidth(const QWidget& grid, const QString& text);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
  void destroyEditor(QWidget* editor, const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;

 signals:
  /// Something else was typed into a cell of the current record.
  void Entered(int column, const QString& typed) const;
  /// A cell cannot be edited.
  void Failed(const kel::Error& failure) const;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* MakeEditor(QWidget& parent, int column) const;
  bool TakesKey(QWidget& editor, const QKeyEvent& key);

  const ListRows& rows_;
  const ColumnSelection& selection_;
  mutable QPointer<QWidget> editor_;
  mutable QString text_before_;  // as the editor shows it
  mutable QString line_break_;   // of the text before
};

}  // namespace kel
