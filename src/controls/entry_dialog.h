// The frame of a small dialog: boxes to type numbers into, above a row of buttons.
#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QString>

#include "controls/Button.h"

namespace kel {

/// Enter presses the button that has the focus, else the one that was added first; Escape and the
/// window's own close reject the dialog. Boxes and buttons stand in the order of their adding, as
/// far as the platform has no order of its own for buttons.
class EntryDialog : public QDialog {
 public:
  /// Shows the dialog over the active window until it is closed.
  void Ask();

 protected:
  EntryDialog(const QString& name, const QString& caption);

  /// `label` has the mnemonic of the box behind its "&". The text of the first box is selected
  /// when the dialog opens.
  QLineEdit* AddNumberBox(const QString& name, const QString& label, const QString& text);
  Button* AddButton(const QString& name, const QString& caption, QDialogButtonBox::ButtonRole role);

  /// The size that the screen has for the dialog within its frame, in pixels.
  QSize Room() const;

  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QFormLayout* boxes_;  // children
  QDialogButtonBox* buttons_;
  QLineEdit* first_box_ = nullptr;
  Button* default_ = nullptr;
};

}  // namespace kel
