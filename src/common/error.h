// The one exception type of the library.
#pragma once

#include <stdexcept>
#include <string>

namespace kel {

// Error numbers that automation clients know and test for.
namespace error_number {
inline constexpr int kInvalidProcedureCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kDivisionByZero = 11;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kInternalError = 51;
inline constexpr int kBadFileName = 52;
inline constexpr int kFileNotFound = 53;
inline constexpr int kDeviceIoError = 57;
inline constexpr int kDiskFull = 61;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kPathNotFound = 76;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kInvalidUseOfNull = 94;
inline constexpr int kCannotCreateObject = 429;
inline constexpr int kNoSuchMember = 438;
inline constexpr int kNoSuchInterface = 430;
inline constexpr int kInvalidFileFormat = 321;
inline constexpr int kPrinterError = 482;
inline constexpr int kDatabase = 3704;
}  // namespace error_number

/// A failure with the number automation clients know it by and a description for people.
/// Thrown inside the library; public operations are where it stops.
class Error : public std::runtime_error {
 public:
  Error(int number, const std::string& description)
      : std::runtime_error(description), number_(number) {}

  int Number() const noexcept { return number_; }
  std::string Description() const { return what(); }

  /// The error for a failed system call: `what_failed` ("cannot write C.rpt") followed by the
  /// system's own reason. `system_error` is an errno value.
  static Error FromSystem(int system_error, const std::string& what_failed);

 private:
  int number_;
};

}  // namespace kel
