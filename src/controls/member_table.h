// Objects made of tables of members.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "common/error.h"
#include "common/names.h"
#include "common/object.h"
#include "controls/member_arguments.h"

namespace kel {

/// One member of a kind of thing. A property has `get`, and `put` unless it is read-only; a method
/// has `call` alone.
template <typename Subject>
struct MemberOf {
  std::string_view name;
  Value (*get)(Subject&, Indexes) = nullptr;
  void (*put)(Subject&, const Value&, Indexes) = nullptr;
  Value (*call)(Subject&, Arguments&) = nullptr;
};

/// The members of a kind, in tables of which some are shared with other kinds. An earlier table
/// hides members of the same name in a later one.
template <typename Subject>
struct MemberTables {
  static constexpr std::size_t kMost = 3;
  std::array<std::span<const MemberOf<Subject>>, kMost> tables;
  std::string_view default_member;  // empty when there is none
};

/// An Object whose members stand in tables. Errors are 438 for a member that there is none of and
/// 383 for writing one that can only be read.
template <typename Subject>
class MemberObject : public Object {
 public:
  explicit MemberObject(const MemberTables<Subject>& tables)
      : tables_(tables), default_(DefaultOf(tables)) {}

  MemberId Resolve(std::string_view name) override {
    Live();
    for (std::size_t table = 0; table < tables_.tables.size(); ++table) {
      const auto& members = tables_.tables.at(table);
      for (std::size_t i = 0; i < members.size(); ++i) {
        if (SameName(members[i].name, name)) return static_cast<MemberId>(table * kSpan + i + 1);
      }
    }
    ThrowNoMember(Called(), name);
  }

  Value Get(MemberId member, Indexes indexes) override {
    Subject& subject = Live();
    const auto& found = At(member);
    if (found.get == nullptr) ThrowNoMember(Called(), std::string(found.name) + " as a property");
    return found.get(subject, indexes);
  }

  void Put(MemberId member, const Value& value, Indexes indexes) override {
    Subject& subject = Live();
    const auto& found = At(member);
    if (found.put == nullptr) ThrowReadOnly(found.name);
    found.put(subject, value, indexes);
  }

  Value Call(MemberId member, Arguments& arguments) override {
    Subject& subject = Live();
    const auto& found = At(member);
    return found.call != nullptr ? found.call(subject, arguments)
                                 : found.get(subject, arguments.positional);
  }

 protected:
  /// What the members work on. Throws Error 91 when it is gone.
  virtual Subject& Live() = 0;
  /// How messages call the object.
  virtual std::string Called() const = 0;

 private:
  // The default member has the id 0; the others are numbered from 1, table by table.
  static constexpr std::size_t kSpan = 256;

  static const MemberOf<Subject>* DefaultOf(const MemberTables<Subject>& tables) {
    for (const auto& members : tables.tables) {
      for (const auto& member : members) {
        if (SameName(member.name, tables.default_member)) return &member;
      }
    }
    return nullptr;
  }

  const MemberOf<Subject>& At(MemberId id) const {
    if (id == kDefaultMember && default_ != nullptr) return *default_;
    const std::size_t place = static_cast<std::size_t>(id) - 1;
    const std::size_t table = place / kSpan;
    if (id <= 0 || table >= tables_.tables.size() ||
        place % kSpan >= tables_.tables.at(table).size()) {
      ThrowNoMember(Called(), id == kDefaultMember ? "by default" : "number " + std::to_string(id));
    }
    return tables_.tables.at(table)[place % kSpan];
  }

  MemberTables<Subject> tables_;
  const MemberOf<Subject>* default_;
};

}  // namespace kel
