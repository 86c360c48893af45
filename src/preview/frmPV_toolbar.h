// The tool bar of the preview.
#pragma once

#include <QAction>
#include <QLineEdit>
#include <QToolBar>
#include <array>

#include "preview/frmPV_color_box.h"
#include "preview/preview_commands.h"

namespace kel {

/// `tbrPV`: a button for every PreviewCommand, named by its key, with the page box `txtPage`, the
/// find box `txtFind` and the colour boxes `picBack` and `picFore` among them.
class PreviewToolbar : public QToolBar {
  Q_OBJECT

 public:
  explicit PreviewToolbar(QWidget* parent);

  QLineEdit& PageBox() { return *page_box_; }
  QLineEdit& FindBox() { return *find_box_; }
  ColorBox& BackBox() { return *back_box_; }
  ColorBox& ForeBox() { return *fore_box_; }

  void Enable(PreviewCommand command, bool enabled);
  /// What a click on the button does: nothing while it is disabled.
  void Press(PreviewCommand command);

 signals:
  void Pressed(kel::PreviewCommand command);
  /// A colour box has another colour, without a palette.
  void ColorStepped();

 protected:
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QAction& ActionOf(PreviewCommand command) { return *actions_[static_cast<std::size_t>(command)]; }
  void AddButton(PreviewCommand command);
  void AddPageBox();
  void AddFindBox();
  ColorBox* AddColorBox(const QString& name, PreviewCommand command);
  void SizeBoxes();
  void AddLabel(const QString& text, QWidget* buddy);

  std::array<QAction*, kPreviewButtons.size()> actions_{};
  QLineEdit* page_box_ = nullptr;
  QLineEdit* find_box_ = nullptr;
  ColorBox* back_box_ = nullptr;
  ColorBox* fore_box_ = nullptr;
  bool focused_by_click_ = false;
};

}  // namespace kel
