// What the tests of this layer share: a folder of their own, real databases, expected errors.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <stdlib.h>  // mkdtemp

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>

#include "common/error.h"

namespace kel {

/// A folder that lives as long as the test.
class DataTest : public testing::Test {
 protected:
  DataTest() {
    std::string name = (std::filesystem::temp_directory_path() / "data_test.XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
  }
  ~DataTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::filesystem::path File(std::string_view name) const { return folder_ / name; }

  std::filesystem::path WriteFile(std::string_view name, std::string_view bytes) const {
    std::ofstream(File(name), std::ios::binary) << bytes;
    return File(name);
  }

  /// Runs SQL as another program would.
  std::filesystem::path WriteDatabase(std::string_view name, const std::string& sql) const {
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open(File(name).c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database);
    sqlite3_close(database);
    return File(name);
  }

 private:
  std::filesystem::path folder_;
};

/// The error that an operation must throw.
inline Error ErrorOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "no error";
  return {0, ""};
}

inline testing::AssertionResult Contains(const Error& error, std::string_view part) {
  if (error.Description().find(part) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "\"" << part << "\" is not in: " << error.Description();
}

}  // namespace kel
