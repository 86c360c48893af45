// The mouse pointer while work goes on.
#pragma once

#include "common/desktop.h"

namespace kel {

/// The hourglass, as long as it lives. A screen that refuses it does not stop the work.
class Hourglass {
 public:
  Hourglass() { Show(MousePointer::kHourglass); }
  ~Hourglass() { Show(MousePointer::kDefault); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  static void Show(MousePointer pointer) noexcept;
};

}  // namespace kel
