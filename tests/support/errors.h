// The errors of operations that must fail.
#pragma once

#include <gtest/gtest.h>

#include <string_view>

#include "common/error.h"

namespace kel::testing {

/// The error that an operation must throw.
template <typename Operation>
Error ErrorOf(Operation operation) {
  try {
    operation();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "no error";
  return {0, ""};
}

/// Whether the error's description says `part`.
inline ::testing::AssertionResult Contains(const Error& error, std::string_view part) {
  if (error.Description().find(part) != std::string::npos) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "\"" << part << "\" is not in: " << error.Description();
}

}  // namespace kel::testing
