// The page of the setup window that holds margins and sizes.
#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <array>

#include "setup/setup_values.h"

namespace kel {

/// mgnTop to mgnLines, and below them what the page has room for.
class SetupPage : public QWidget {
  Q_OBJECT

 public:
  SetupPage();

  void Show(const SetupValues& values);
  void TakeInto(SetupValues& values) const;
  /// Tells the numbers in lblLines and lblColumns and keeps them in their property `tag`.
  void ShowCapacity(const PageCapacity& capacity);
  QLineEdit& Box(PageField field) const { return *boxes_.at(static_cast<std::size_t>(field)); }

 signals:
  /// Another page height or width is being typed.
  void SizeChanged();

 private:
  QGroupBox* MarginsGroup();
  QGroupBox* SizeGroup();
  void AddBox(QGroupBox* group, PageField field);

  std::array<QLineEdit*, kPageFields> boxes_{};  // children
  QLabel* lblLines_;
  QLabel* lblColumns_;
  QCheckBox* chkPrintDateTime_;
  QCheckBox* chkPrintColumnDivider_;
};

}  // namespace kel
