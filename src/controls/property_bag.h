// The kept properties of a control, by their published keys.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "common/value.h"

namespace kel {

/// Keys are compared without regard to case.
class PropertyBag {
 public:
  void Write(std::string_view key, Value value);
  /// `fallback` when the key is missing.
  Value Read(std::string_view key, Value fallback) const;
  std::size_t Size() const { return values_.size(); }

 private:
  struct NoCase {
    bool operator()(const std::string& left, const std::string& right) const;
  };
  std::map<std::string, Value, NoCase> values_;
};

}  // namespace kel
