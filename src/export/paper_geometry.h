// Where report text stands on paper. Lengths are points of 1/72 inch, y runs downwards.
#pragma once

#include <string_view>

namespace kel {

struct PaperSize {
  double width = 0;
  double height = 0;
};

/// The part of a sheet that is printed on.
struct PaperArea {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
};

/// A font size and the cell that every character then takes.
struct TextPitch {
  double size = 0;
  double cell_width = 0;
  double cell_height = 0;
};

/// A sheet of `width` by `height` inches, turned when not `portrait`. Throws Error 5 for sizes that
/// leave nothing to print on or that a PDF cannot have.
PaperSize SheetOf(double width, double height, bool portrait);

/// The sheet without the borders that the setup's capacities leave, too.
PaperArea AreaOf(PaperSize sheet);

/// A printer character set at 6 lines an inch. Its name tells the characters per inch ("17 cpi");
/// 10 for any other name. Letters of a wide set are not higher than those of 10 cpi.
TextPitch PitchOf(std::string_view character_set);

/// Throws Error 5 for a font size that is none.
void CheckPoints(double points);

/// How much smaller `width` by `height` must be drawn to fit the area; 1 when it fits as it is.
double ScaleToFit(PaperArea area, double width, double height);

}  // namespace kel
