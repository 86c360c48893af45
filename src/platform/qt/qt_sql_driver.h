// The driver of a database of Qt's.
#pragma once

#include <memory>

#include "data/driver.h"
#include "platform/qt/qt_sql_connection.h"

namespace kel {

/// REQUIRES that the database is open.
std::unique_ptr<Driver> MakeQtSqlDriver(SharedQtSql connection);

}  // namespace kel
