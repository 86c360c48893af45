// The published enumerations and the published record; their values are part of the interface.
#pragma once

#include <cstdint>

namespace kel {

/// Buttons of the message box; a style and a default flag may be added together.
enum ButtonStyles : int {
  msgOK = 1,
  msgYesNo = 2,
  msgOKCancel = 3,
  msgDefault1 = 4,
  msgDefault2 = 8,
};

/// Icons of the message box, in the order of its image list.
enum IconStyles : int {
  msgSave = 1,
  msgUpdate = 2,
  msgDelete = 3,
  msgPrint = 4,
  msgCloseAll = 5,
  msgInformation = 6,
  msgQuestion = 7,
  msgCritical = 8,
  msgExclamation = 9,
};

/// Where a window is placed against the screen.
enum AlignObject : int {
  zurAlignLeftTop = 0,
  zurAlignLeftBottom = 1,
  zurAlignRightTop = 2,
  zurAlignRightBottom = 3,
  zurAlignCenterTop = 4,
  zurAlignCenterLeft = 5,
  zurAlignCenterRight = 6,
  zurAlignCenterBottom = 7,
  zurAlignCenter = 8,
};

/// What CheckValue asks of a field's value.
enum Validation : int {
  mEqualto = 0,
  mLessthan = 1,
  mGreaterthan = 2,
  mLessthanOrEqualto = 3,
  mGreaterthanOrEqualto = 4,
  mNotEqualto = 5,
};

/// A rectangle on the screen, in pixels.
struct RECT {
  std::int32_t Left = 0;
  std::int32_t Top = 0;
  std::int32_t Right = 0;
  std::int32_t Bottom = 0;
};

}  // namespace kel
