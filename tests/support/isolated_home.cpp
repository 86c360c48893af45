// Linked into tests that use the library's temporary folder or settings: they get a home of their
// own before the first test runs.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "support/test_folder.h"

namespace kel::testing {
namespace {

class IsolatedHome : public ::testing::Environment {
 public:
  void SetUp() override {
    folder_ = std::make_unique<TestFolder>();
    setenv("KELDLL_HOME", (*folder_ / "home").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (*folder_ / "config").c_str(), 1);
  }
  void TearDown() override { folder_.reset(); }

 private:
  std::unique_ptr<TestFolder> folder_;
};

const ::testing::Environment* const home =
    ::testing::AddGlobalTestEnvironment(std::make_unique<IsolatedHome>().release());

}  // namespace
}  // namespace kel::testing
