// How far an export is.
#pragma once

#include <cstdint>

namespace kel {

/// Follows an export and lets it be stopped.
class ExportProgress {
 public:
  virtual ~ExportProgress() = default;

  /// Tells how many steps are to come; 0 when that is not known.
  virtual void Begin(std::int64_t steps) = 0;
  /// `steps` more are done. Lets pending window events run now and then. False once the user wants
  /// the export stopped.
  virtual bool Step(std::int64_t steps = 1) = 0;
};

}  // namespace kel
