// A database file made as another program makes it, without the library.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>

namespace kel::testing {

/// Runs `sql` on the file, which is made when there is none; the result is its path.
inline std::filesystem::path WriteDatabase(const std::filesystem::path& path,
                                           const std::string& sql) {
  sqlite3* database = nullptr;
  EXPECT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
      << sqlite3_errmsg(database);
  sqlite3_close(database);
  return path;
}

}  // namespace kel::testing
