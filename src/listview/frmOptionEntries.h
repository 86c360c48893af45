// What the user picks and types in the condition dialog.
#pragma once

#include <QButtonGroup>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QStringList>
#include <QStringListModel>
#include <QWidget>
#include <cstdint>
#include <string>

#include "controls/ProgressBar.h"
#include "listview/list_model.h"

namespace kel {

/// The lists of fields and operations, the value box, the direction of a search, and the bar of a
/// scan. The value box takes a million values; none is completed or put in by itself.
class OptionEntries : public QWidget {
 public:
  OptionEntries();

  /// Begins anew with the first field and operation, unless they are the fields that are there.
  void ListFields(const QStringList& fields);
  /// What the value box offers; its text stays.
  void ListValues(const QStringList& values);

  std::string Field() const;
  std::string Operation() const;
  std::string Value() const;
  FindOption Direction() const;

  void ShowDirection(bool shown) { direction_->setVisible(shown); }
  /// Goes to the value box, if it is there.
  void FocusValue();
  void ShowBar(bool shown);
  /// Paints at once how far a scan of that many rows is.
  void PaintBar(std::int64_t done, std::int64_t rows);

 private:
  void AddLists();
  void AddValueBox();
  void AddDirection();
  void AddBar();
  void ShowValueBox();

  QGridLayout* all_;  // children
  QListWidget* lstFields_;
  QListWidget* lstOp_;
  QComboBox* cmbValue_;
  QLabel* value_label_;
  QStringListModel* values_;
  QFrame* direction_;
  QButtonGroup* opt_;
  ProgressBar* PBR_;
};

}  // namespace kel
