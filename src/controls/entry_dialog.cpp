#include "controls/entry_dialog.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include "controls/top_window.h"

namespace kel {
namespace {

constexpr int kStep = 8;  // of the space around and between controls, in pixels at 100 %

constexpr int kDigits = 11;  // of the longest 32-bit number

}  // namespace

EntryDialog::EntryDialog(const QString& name, const QString& caption)
    : boxes_(new QFormLayout), buttons_(new QDialogButtonBox) {
  setObjectName(name);
  setWindowTitle(caption);
  setAttribute(Qt::WA_QuitOnClose, false);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(2 * kStep, 2 * kStep, 2 * kStep, 2 * kStep);
  layout->setSpacing(2 * kStep);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  boxes_->setHorizontalSpacing(kStep);
  boxes_->setVerticalSpacing(kStep);
  layout->addLayout(boxes_);
  layout->addWidget(buttons_);
}

void EntryDialog::Ask() {
  QWidget* const owner = OwnerForNewWindow();
  SetOwner(*this, owner);
  adjustSize();
  if (owner != nullptr) move(PlaceOver(*this, *owner));
  exec();
}

QSize EntryDialog::Room() const {
  const QWidget* const owner = OwnerForNewWindow();
  return RoomOnScreen(owner != nullptr ? *owner : *this);
}

QLineEdit* EntryDialog::AddNumberBox(const QString& name, const QString& label,
                                     const QString& text) {
  auto* const box = new QLineEdit(text);
  box->setObjectName(name);
  box->setAlignment(Qt::AlignRight);
  box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QString(kDigits, '0')));
  if (first_box_ == nullptr) first_box_ = box;
  boxes_->addRow(label, box);  // makes the box the label's buddy
  box->setAccessibleName(QString(label).remove('&').remove(':'));
  return box;
}

Button* EntryDialog::AddButton(const QString& name, const QString& caption,
                               QDialogButtonBox::ButtonRole role) {
  auto* const button = new Button(caption);
  button->setObjectName(name);
  buttons_->addButton(button, role);
  if (default_ == nullptr) {
    default_ = button;
    button->Default(true);
  }
  return button;
}

void EntryDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (first_box_ == nullptr) return;
  first_box_->setFocus();
  first_box_->selectAll();
}

void EntryDialog::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter || default_ == nullptr) return QDialog::keyPressEvent(event);
  if (event->isAutoRepeat()) return event->accept();  // still held from before
  auto* const focused = dynamic_cast<Button*>(focusWidget());
  (focused != nullptr ? focused : default_)->click();
}

}  // namespace kel
