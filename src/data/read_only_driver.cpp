#include "data/read_only_driver.h"

#include <utility>

#include "data/ado_errors.h"

namespace kel {
namespace {

class RowsDriver : public Driver {
 public:
  explicit RowsDriver(OpenRows open) : open_(std::move(open)) {}

  std::unique_ptr<Statement> Prepare(std::string_view /*sql*/,
                                     std::span<const Parameter> /*parameters*/) override {
    return open_();
  }
  std::int64_t Execute(std::string_view /*sql*/,
                       std::span<const Parameter> /*parameters*/) override {
    throw NotSupported("changes");
  }
  std::vector<std::string> KeyOf(const std::string& /*table*/) override { return {}; }

 private:
  OpenRows open_;
};

}  // namespace

std::unique_ptr<Driver> ReadOnlyDriver(OpenRows open) {
  return std::make_unique<RowsDriver>(std::move(open));
}

}  // namespace kel
