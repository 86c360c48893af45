// The tool bar of the preview.
#pragma once

#include <QHBoxLayout>
#include <QLineEdit>
#include <QRect>
#include <QStyle>
#include <QToolButton>
#include <QWidget>
#include <array>
#include <cstddef>

#include "preview/frmPVColorBox.h"
#include "preview/preview_commands.h"

namespace kel {

/// `tbrPV`: a button for every PreviewCommand, named by its key, with the page box `txtPage`, the
/// find box `txtFind` and the colour boxes `picBack` and `picFore` among them. What belongs
/// together is a group; groups that do not fit into a row of the bar go into further ones.
class PreviewToolbar : public QWidget {
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
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QToolButton& ButtonOf(PreviewCommand command) {
    return *buttons_[static_cast<std::size_t>(command)];
  }
  void LayOut();
  int Metric(QStyle::PixelMetric metric) const;
  void BeginGroup();
  void AddButton(PreviewCommand command);
  void AddPageBox();
  void AddFindBox();
  ColorBox* AddColorBox(const QString& name, PreviewCommand command, const QString& what);
  void AddLabel(const QString& text, QWidget* buddy);
  QRect GapBefore(int index) const;

  QHBoxLayout* group_ = nullptr;  // the one that is being filled
  std::array<QToolButton*, kPreviewButtons.size()> buttons_{};
  QLineEdit* page_box_ = nullptr;
  QLineEdit* find_box_ = nullptr;
  ColorBox* back_box_ = nullptr;
  ColorBox* fore_box_ = nullptr;
  bool focused_by_click_ = false;
};

}  // namespace kel
