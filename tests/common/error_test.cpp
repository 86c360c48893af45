#include "common/error.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

namespace kel {
namespace {

TEST(Error, ASystemErrorHasTheNumberThatClientsTestForAndTheSystemsReason) {
  const std::vector<std::pair<int, int>> cases = {
      {ENOENT, 53}, {ENOTDIR, 76}, {EACCES, 70}, {EPERM, 70}, {EROFS, 70}, {EISDIR, 70},
      {ELOOP, 70},  {ENOSPC, 61},  {EDQUOT, 61}, {ENOMEM, 7}, {EIO, 57},
  };
  for (const auto& [system_error, number] : cases) {
    EXPECT_EQ(Error::FromSystem(system_error, "x").Number(), number) << system_error;
  }
  EXPECT_EQ(Error::FromSystem(ENOSPC, "cannot write C.rpt").Description(),
            "cannot write C.rpt: No space left on device");
}

}  // namespace
}  // namespace kel
