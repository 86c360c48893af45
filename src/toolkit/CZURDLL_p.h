// What the operations of CZURDLL share; for its own sources only.
#pragma once

#include <memory>
#include <utility>

#include "data/Recordset.h"
#include "toolkit/CZURDLL.h"
#include "toolkit/hourglass.h"

namespace kel {

/// Runs a step whose failure does not matter.
template <typename Step>
void Quietly(Step step) noexcept {
  try {
    step();
  } catch (...) {
    return;
  }
}

/// The frame of every operation: its failure ends in the common error path, and the result is
/// `neutral` then. A `location` of "" is logged as not specified.
template <typename Result, typename Operation>
Result CZURDLL::Guarded(const char* location, Result neutral, Operation operation) noexcept {
  last_error_.reset();
  try {
    return operation();
  } catch (...) {
    ReportCaught(location);
  }
  return neutral;
}

template <typename Operation>
void CZURDLL::Guarded(const char* location, Operation operation) noexcept {
  Guarded(location, false, [&] {
    operation();
    return true;
  });
}

/// The shared recordset, made anew for one operation. The operation keeps its own hold of it: what
/// it calls, a control say, may run another operation of the same object, which makes the next.
class SharedRecordset {
 public:
  explicit SharedRecordset(std::shared_ptr<Recordset>& shared)
      : shared_(shared), own_(std::make_shared<Recordset>()) {
    shared_ = own_;
  }

  Recordset* operator->() const { return own_.get(); }
  Recordset& operator*() const { return *own_; }

  void CloseAndRelease() {
    own_->Close();
    if (shared_ == own_) shared_.reset();
  }

 private:
  std::shared_ptr<Recordset>& shared_;
  std::shared_ptr<Recordset> own_;
};

/// Rows of an operation that looks at the first one only.
inline constexpr std::int64_t kFirstRowOnly = 1;

}  // namespace kel
