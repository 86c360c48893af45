#include "common/value.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "common/error.h"
#include "common/object.h"
#include "common/scratch_folder.h"

namespace kel {
namespace {

TEST(Value, KnowsWhatItHolds) {
  EXPECT_EQ(Value().Kind(), ValueKind::kEmpty);
  EXPECT_EQ(Value::Null().Kind(), ValueKind::kNull);
  EXPECT_EQ(Value::Missing().Kind(), ValueKind::kMissing);
  EXPECT_EQ(Value(true).Kind(), ValueKind::kBoolean);
  EXPECT_EQ(Value(1).Kind(), ValueKind::kInteger);
  EXPECT_EQ(Value(1.0).Kind(), ValueKind::kDouble);
  EXPECT_EQ(Value(Currency{1}).Kind(), ValueKind::kCurrency);
  EXPECT_EQ(Value(Date{1}).Kind(), ValueKind::kDate);
  EXPECT_EQ(Value("text").Kind(), ValueKind::kString);
  EXPECT_EQ(Value(Value::ObjectPtr()).Kind(), ValueKind::kObject);
  EXPECT_EQ(Value(Value::Array{1, "two"}).Kind(), ValueKind::kArray);
}

TEST(Value, TextOfNumbersIsTheShortestThatReadsBack) {
  const std::vector<std::pair<double, std::string>> cases = {
      {0, "0"},
      {-0.0, "0"},
      {1250, "1250"},
      {0.1, "0.1"},
      {-1234.5, "-1234.5"},
      {1e20, "100000000000000000000"},
      {1e21, "1E+21"},
      {1e22, "1E+22"},
      {1.5e-10, "1.5E-10"},
      {1e-7, "0.0000001"},
      {-2.5e-8, "-2.5E-08"},
      {1.0 / 3, "0.3333333333333333"},
      {1e308, "1E+308"},
  };
  for (const auto& [number, text] : cases) EXPECT_EQ(NumberText(number), text);
}

TEST(Value, TextOfAnyDoubleReadsBackAsTheSameNumber) {
  std::mt19937_64 random(20260401);
  for (int i = 0; i < 20'000; ++i) {
    const std::uint64_t bits = random();
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    if (number != number || number - number != 0) continue;
    ASSERT_EQ(Value(NumberText(number)).ToDouble(), number) << NumberText(number);
  }
}

TEST(Value, TextOfEachKind) {
  const std::vector<std::pair<Value, std::string>> cases = {
      {Value(), ""},
      {true, "True"},
      {false, "False"},
      {std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
      {Currency{12'500'000}, "1250"},
      {Currency{12'500'500}, "1250.05"},
      {Currency{-5}, "-0.0005"},
      {Currency{-10'500}, "-1.05"},
      {Currency{std::numeric_limits<std::int64_t>::min()}, "-922337203685477.5808"},
      {Date{0}, "30/12/1899"},
      {Date{46113}, "01/04/2026"},
      {Date{46113.75}, "01/04/2026 18:00:00"},
      {Date{46112.999999}, "01/04/2026"},  // rounds up to midnight
      {Date{-1.25}, "29/12/1899 06:00:00"},
      {Date{60}, "28/02/1900"},  // 1900 was no leap year
      {Date{2958465}, "31/12/9999"},
      {"text", "text"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(value.ToText(), text);
}

TEST(Value, WhatHasNoTextOrNumberIsRefusedByItsPublishedNumber) {
  const auto text_error = [](const Value& value) {
    return ErrorNumberOf<Error>([&] { value.ToText(); });
  };
  const auto number_error = [](const Value& value) {
    return ErrorNumberOf<Error>([&] { value.ToDouble(); });
  };
  for (const auto& error : {+text_error, +number_error}) {
    EXPECT_EQ(error(Value::Null()), error_number::kInvalidUseOfNull);
    EXPECT_EQ(error(Value::Missing()), error_number::kTypeMismatch);
    EXPECT_EQ(error(Value(Value::ObjectPtr())), error_number::kTypeMismatch);
    EXPECT_EQ(error(Value(Value::Array())), error_number::kTypeMismatch);
  }
  EXPECT_EQ(text_error(Date{1e300}), error_number::kOverflow);
  EXPECT_EQ(text_error(Date{std::numeric_limits<double>::quiet_NaN()}), error_number::kOverflow);
  EXPECT_EQ(number_error("12abc"), error_number::kTypeMismatch);
  EXPECT_EQ(number_error(""), error_number::kTypeMismatch);
  EXPECT_EQ(number_error("1E999"), error_number::kOverflow);
}

TEST(Value, NumbersOfEachKind) {
  EXPECT_EQ(Value().ToDouble(), 0);
  EXPECT_EQ(Value(true).ToDouble(), -1);
  EXPECT_EQ(Value(Currency{12'345}).ToDouble(), 1.2345);
  EXPECT_EQ(Value(Date{1.5}).ToDouble(), 1.5);
  EXPECT_EQ(Value(" 1,00,000.50- ").ToDouble(), -100000.5);
}

TEST(Value, IntegersRoundHalfToEvenAndStayIn32Bits) {
  const std::vector<std::pair<double, std::int32_t>> cases = {
      {0.5, 0},
      {1.5, 2},
      {2.5, 2},
      {-0.5, 0},
      {-1.5, -2},
      {-2.5, -2},
      {2.51, 3},
      {-2.49, -2},
      {2147483647.4, 2147483647},
      {-2147483648.5, std::numeric_limits<std::int32_t>::min()},
  };
  for (const auto& [number, rounded] : cases) EXPECT_EQ(Value(number).ToInt32(), rounded) << number;
  for (const Value& value : {Value(2147483647.5), Value(std::int64_t{1} << 31), Value(1e300),
                             Value(std::numeric_limits<double>::quiet_NaN())}) {
    EXPECT_EQ(ErrorNumberOf<Error>([&] { value.ToInt32(); }), error_number::kOverflow);
  }
}

TEST(Value, TruthOfNumbersAndWords) {
  EXPECT_TRUE(Value("TRUE").ToBoolean());
  EXPECT_TRUE(Value("true").ToBoolean());
  EXPECT_TRUE(Value("-0.5").ToBoolean());
  EXPECT_TRUE(Value(2).ToBoolean());
  EXPECT_FALSE(Value("False").ToBoolean());
  EXPECT_FALSE(Value("0.00").ToBoolean());
  EXPECT_FALSE(Value().ToBoolean());
  EXPECT_EQ(ErrorNumberOf<Error>([] { Value("yes").ToBoolean(); }), error_number::kTypeMismatch);
}

// A thing with one property whose name can be looked up only once.
class OneLookUpObject : public Object {
 public:
  std::string TypeName() const override { return "Label"; }
  MemberId Resolve(std::string_view name) override {
    if (looked_up_ || name != "Caption") throw Error(error_number::kNoSuchMember, "no member");
    looked_up_ = true;
    return 7;
  }
  Value Get(MemberId member, std::span<const Value> /*indexes*/) override {
    return member == 7 ? caption_ : Value();
  }
  void Put(MemberId member, const Value& value, std::span<const Value> /*indexes*/) override {
    if (member == 7) caption_ = value;
  }
  Value Call(MemberId /*member*/, Arguments& /*arguments*/) override { return {}; }

 private:
  Value caption_;
  bool looked_up_ = false;
};

TEST(Value, GivesTheObjectItHoldsWhoseMemberIsResolvedOnce) {
  const Value label(std::make_shared<OneLookUpObject>());
  Member caption(label.ToObject(), "Caption");
  caption.Put("Cash");
  EXPECT_EQ(caption.Get(), Value("Cash"));

  EXPECT_EQ(ErrorNumberOf<Error>([] { Value(Value::ObjectPtr()).ToObject(); }),
            error_number::kObjectNotSet);
  EXPECT_EQ(ErrorNumberOf<Error>([] { Value("Label").ToObject(); }), error_number::kTypeMismatch);
  EXPECT_EQ(ErrorNumberOf<Error>([] { Value(1).ToArray(); }), error_number::kTypeMismatch);
  EXPECT_EQ(Value(Value::Array{1, "two"}).ToArray()[1], Value("two"));
}

}  // namespace
}  // namespace kel
