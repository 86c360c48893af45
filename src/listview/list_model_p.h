// What the sources of ListModel share; for its own sources only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "common/error.h"
#include "common/value.h"
#include "data/Recordset.h"
#include "toolkit/wait_scope.h"

namespace kel {

inline Error ObjectNotSet() {
  return {error_number::kObjectNotSet, "Object variable or With block variable not set"};
}

/// Tells that work goes on where it takes longer than a blink: for a sort or filter of that many
/// rows.
inline std::unique_ptr<WaitScope> WaitForRows(const Recordset& records,
                                              const std::string& caption) {
  constexpr std::int64_t kManyRows = 200'000;
  return records.RowsSeen() > kManyRows ? std::make_unique<WaitScope>(caption) : nullptr;
}

/// A date as people type it, day first.
std::string DateEntry(const Value& date);

inline std::string Bracketed(const std::string& field) { return "[" + field + "]"; }

}  // namespace kel
