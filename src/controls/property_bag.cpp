#include "controls/property_bag.h"

#include <algorithm>
#include <utility>

namespace kel {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

void PropertyBag::Write(std::string_view key, Value value) {
  values_.insert_or_assign(std::string(key), std::move(value));
}

Value PropertyBag::Read(std::string_view key, Value fallback) const {
  const auto found = values_.find(std::string(key));
  if (found != values_.end()) return found->second;
  return fallback;
}

bool PropertyBag::NoCase::operator()(const std::string& left, const std::string& right) const {
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [](char a, char b) { return Lower(a) < Lower(b); });
}

}  // namespace kel
