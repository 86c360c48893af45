#include "toolkit/hourglass.h"

#include <exception>

#include "common/host.h"

namespace kel {

void Hourglass::Show(MousePointer pointer) noexcept {
  try {
    CurrentHost().desktop->SetMousePointer(pointer);
  } catch (const std::exception&) {
    return;
  }
}

}  // namespace kel
