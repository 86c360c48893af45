#pragma once

#include "support/child_process.h"

namespace kel {
using testing::StartChild;
using testing::Succeeded;
}  // namespace kel
