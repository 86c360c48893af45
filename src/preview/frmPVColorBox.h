// A small picture box that is filled with one colour.
#pragma once

#include <QAbstractButton>

#include "common/ole_color.h"

namespace kel {

/// Its back colour is what it stands for; a click asks for it, or for another one. With the focus
/// it goes through the palette's colours on Shift+Up and Shift+Down. Its accessible description
/// is the colour's name, or #rrggbb, unless the box itself is named so.
class ColorBox : public QAbstractButton {
  Q_OBJECT

 public:
  ColorBox(const QString& accessible_name, QWidget* parent);

  OleColor BackColor() const { return back_color_; }
  void BackColor(OleColor color);

  /// A marked box is the one whose colour is in use.
  bool IsMarked() const { return marked_; }
  void Mark(bool marked);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  /// The user went on to another colour.
  void Stepped();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  OleColor back_color_ = system_color::kWindowBackground;
  bool marked_ = false;
};

}  // namespace kel
