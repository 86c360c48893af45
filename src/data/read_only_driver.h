// Rows that come from elsewhere than a database, as a driver.
#pragma once

#include <functional>
#include <memory>

#include "data/driver.h"

namespace kel {

/// Opens the rows anew from their beginning, each time that it is called.
using OpenRows = std::function<std::unique_ptr<Statement>()>;

/// A driver whose every statement, whatever its text, gives the rows that `open` opens: for a file
/// that is browsed as a table is, and read again by Requery. Its rows cannot be changed (Error
/// 3251).
std::unique_ptr<Driver> ReadOnlyDriver(OpenRows open);

}  // namespace kel
