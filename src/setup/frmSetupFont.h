// The choice of the font that Windows mode prints with.
#pragma once

#include <QLabel>
#include <QWidget>

#include "controls/Button.h"
#include "setup/page_capacity.h"
#include "setup/setup_values.h"

namespace kel {

/// The room of one character of a font, whole twips.
CellSize FontCell(const PrintFont& font);

/// lblFont shows name, size and style as they look on white paper; one button opens the font
/// dialog, one the colour dialog.
class SetupFont : public QWidget {
  Q_OBJECT

 public:
  SetupFont();

  void Show(const PrintFont& font);
  const PrintFont& Font() const { return font_; }
  Button* ChooseButton() const { return cmdFont_; }

 signals:
  void Changed();

 private:
  void Choose();
  void ChooseColor();

  PrintFont font_;
  QLabel* lblFont_;  // children
  Button* cmdFont_;
};

}  // namespace kel
