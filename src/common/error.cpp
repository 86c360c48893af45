#include "common/error.h"

#include <cerrno>
#include <system_error>

namespace kel {
namespace {

int AutomationNumber(int system_error) {
  switch (system_error) {
    case ENOENT:
      return error_number::kFileNotFound;
    case ENOTDIR:
      return error_number::kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ELOOP:
      return error_number::kPermissionDenied;
    case EFBIG:
    case ENOSPC:
#ifdef EDQUOT
    case EDQUOT:
#endif
      return error_number::kDiskFull;
    case ENOMEM:
      return error_number::kOutOfMemory;
    default:
      return error_number::kDeviceIoError;
  }
}

}  // namespace

Error Error::FromSystem(int system_error, const std::string& what_failed) {
  return {AutomationNumber(system_error),
          what_failed + ": " + std::generic_category().message(system_error)};
}

}  // namespace kel
