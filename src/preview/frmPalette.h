// The little window in which a colour of the preview is chosen.
#pragma once

#include <QDialog>
#include <cstddef>

#include "common/ole_color.h"

namespace kel {

class ColorBox;

/// A click on a cell (`Pal`) chooses its colour and closes the palette; any key, and a click
/// beside it, closes it with the colour as it was.
///
///     auto* palette = new frmPalette(this);
///     palette->ShowPalette(*picBack);
class frmPalette : public QDialog {
 public:
  explicit frmPalette(QWidget* parent);

  /// Shows the palette just below `box` until it is closed, and puts the chosen colour into the
  /// box. A box, or a palette, that is destroyed meanwhile is left alone.
  void ShowPalette(ColorBox& box);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void AddCells();
  void PlaceBelow(const ColorBox& box);

  OleColor chosen_ = 0;
};

}  // namespace kel
