// An open database.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "data/driver.h"

namespace kel {

/// What a connection may do to its database.
enum class Access { kRead, kReadWrite };

/// A connection with ADO's meaning, over the driver of its database.
///
///     Connection books(OpenSqlite("books.db", Access::kRead));
///     Recordset day_book;
///     day_book.Open("SELECT * FROM DayBook", books);
class Connection {
 public:
  Connection() = default;
  explicit Connection(std::unique_ptr<kel::Driver> driver) : driver_(std::move(driver)) {}

  bool IsOpen() const noexcept { return driver_ != nullptr; }
  void Close() { driver_.reset(); }

  /// Runs a statement; the result is the number of records affected.
  /// Throws Error 3704 when the connection is closed.
  std::int64_t Execute(std::string_view sql);

  /// The driver, for recordsets. Throws Error 3704 when the connection is closed.
  kel::Driver& Driver();

 private:
  std::unique_ptr<kel::Driver> driver_;
};

}  // namespace kel
