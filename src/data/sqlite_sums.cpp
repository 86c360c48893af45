#include "data/sqlite_sums.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <system_error>

#include "data/decimal_sum.h"

namespace kel {
namespace {

/// What an aggregate has added up.
struct Sum {
  DecimalSum exact;
  double not_finite = 0;  // infinities and what they make of each other
  std::int64_t numbers = 0;
  std::int64_t not_whole = 0;  // of these
};

/// The sum of the running aggregate, which SQLite keeps as a pointer; null before the first row.
Sum** Place(sqlite3_context* context, bool make) {
  return static_cast<Sum**>(
      sqlite3_aggregate_context(context, make ? static_cast<int>(sizeof(void*)) : 0));
}

/// Adds a row's value, or takes it away where `sign` is -1.
void AddValue(Sum& sum, sqlite3_value* value, int sign) {
  const int type = sqlite3_value_numeric_type(value);
  if (type == SQLITE_NULL) return;
  sum.numbers += sign;
  if (type == SQLITE_INTEGER) {
    const std::int64_t integer = sqlite3_value_int64(value);
    if (sign > 0) {
      sum.exact.Add(CellView::Integer(integer));
    } else if (integer != std::numeric_limits<std::int64_t>::min()) {
      sum.exact.Add(CellView::Integer(-integer));
    } else {
      sum.exact.Add(CellView::Text("9223372036854775808"));
    }
    return;
  }
  sum.not_whole += sign;
  const double number = sign * sqlite3_value_double(value);
  if (std::isfinite(number)) {
    sum.exact.Add(CellView::Double(number));
  } else {
    sum.not_finite += number;
  }
}

void Add(sqlite3_context* context, sqlite3_value* value, int sign) {
  Sum** const place = Place(context, true);
  try {
    if (place == nullptr) throw std::bad_alloc();
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): SQLite keeps it; Finish deletes it
    if (*place == nullptr) *place = new Sum();
    AddValue(**place, value, sign);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  }
}

double NearestDouble(const Sum& sum) {
  if (sum.not_finite != 0 || std::isnan(sum.not_finite)) return sum.not_finite;
  const std::string text = sum.exact.Text();
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

void ReturnSum(sqlite3_context* context, const Sum* sum) {
  if (sum == nullptr || sum->numbers == 0) {
    sqlite3_result_null(context);
    return;
  }
  if (sum->not_whole > 0) {
    sqlite3_result_double(context, NearestDouble(*sum));
    return;
  }
  const std::string text = sum->exact.Text();
  std::int64_t integer = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), integer);
  if (read.ec == std::errc()) {
    sqlite3_result_int64(context, integer);
  } else {
    sqlite3_result_error(context, "integer overflow", -1);
  }
}

void ReturnTotal(sqlite3_context* context, const Sum* sum) {
  sqlite3_result_double(context, sum == nullptr ? 0 : NearestDouble(*sum));
}

using Return = void (*)(sqlite3_context*, const Sum*);

void Step(sqlite3_context* context, int /*count*/, sqlite3_value** values) {
  Add(context, *values, 1);
}

void Inverse(sqlite3_context* context, int /*count*/, sqlite3_value** values) {
  Add(context, *values, -1);
}

/// What the rows so far give.
template <Return Result>
void Current(sqlite3_context* context) {
  Sum** const place = Place(context, false);
  try {
    Result(context, place == nullptr ? nullptr : *place);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  }
}

template <Return Result>
void Finish(sqlite3_context* context) {
  Current<Result>(context);
  // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): as SQLite has kept it
  if (Sum** const place = Place(context, false); place != nullptr) delete *place;
}

template <Return Result>
int Define(sqlite3* database, const char* name) {
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  return sqlite3_create_window_function(database, name, 1, kFlags, nullptr, Step, Finish<Result>,
                                        Current<Result>, Inverse, nullptr);
}

}  // namespace

int UseExactSums(sqlite3* database) {
  const int code = Define<ReturnSum>(database, "sum");
  return code == SQLITE_OK ? Define<ReturnTotal>(database, "total") : code;
}

}  // namespace kel
