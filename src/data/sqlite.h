// SQLite databases through SQLite's own interface.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>

#include "data/Connection.h"
#include "data/driver.h"

namespace kel {

/// How long a statement waits for another program's lock before it fails.
inline constexpr std::chrono::milliseconds kSqliteLockWait{5000};

/// Opens an existing database file. Throws Error 53 when there is none, and with SQLite's own
/// words for a file that is no database or may not be read. The driver and its statements are used
/// on one thread at a time; statements outlive the driver.
std::unique_ptr<Driver> OpenSqlite(const std::filesystem::path& path, Access access,
                                   std::chrono::milliseconds lock_wait = kSqliteLockWait);

}  // namespace kel
