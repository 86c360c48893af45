#include "export/late_bound.h"

#include <span>

namespace kel {
namespace {

const std::shared_ptr<Object>& PointerOf(const Value& object) {
  object.ToObject();  // refuses what is none
  return object.Pointer();
}

}  // namespace

LateBound::LateBound(const Value& object) : object_(PointerOf(object)) {}

LateBound LateBound::Get(std::string_view member, Values indexes) const {
  const std::span<const Value> values(indexes.begin(), indexes.size());
  return LateBound(object_->Get(object_->Resolve(member), values));
}

void LateBound::Put(std::string_view member, const Value& value) const {
  object_->Put(object_->Resolve(member), value);
}

Value LateBound::Call(std::string_view member, Values arguments) const {
  return CallMember(object_->Resolve(member), arguments);
}

LateBound LateBound::Item(const Value& index) const {
  return LateBound(CallMember(Object::kDefaultMember, {index}));
}

Value LateBound::CallMember(Object::MemberId member, Values arguments) const {
  Arguments passed;
  passed.positional = arguments;
  return object_->Call(member, passed);
}

std::string PathText(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return {utf8.begin(), utf8.end()};
}

}  // namespace kel
