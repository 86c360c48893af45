// What the tests of CZURDLL's operations share: a screen that is written down, a log, and books.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/host.h"
#include "common/temp_folder.h"
#include "data/Connection.h"
#include "data/sqlite.h"
#include "support/fixed_clock.h"
#include "support/recording_desktop.h"
#include "support/sqlite_file.h"
#include "support/test_control.h"
#include "support/test_folder.h"
#include "toolkit/CZURDLL.h"

namespace kel::testing {

using Texts = std::vector<std::string>;

inline std::string Line(const std::string& text) {
  return "15/11/2026 02:05:09 PM," + text + "\r\n";
}

class ToolkitTest : public ::testing::Test {
 protected:
  ToolkitTest() {
    ::setenv("LC_ALL", "xx_NOT_INSTALLED.UTF-8", 1);
    std::filesystem::remove_all(log_);
    CurrentHost().desktop = desktop_;
    CurrentHost().clock = std::make_shared<FixedClock>();
  }

  std::string Log() const { return std::filesystem::exists(log_) ? ReadFile(log_) : ""; }
  /// The location and number of the one failure since the last call, "[DLL.Save],3704"; "" without.
  std::string Failure() {
    const std::string line = Log();
    std::filesystem::remove_all(log_);
    EXPECT_EQ(line.empty(), !toolkit_.LastError());
    const std::size_t from = line.find(",[") + 1;
    return line.empty() ? "" : line.substr(from, line.find(" : ") - from);
  }

  const std::filesystem::path log_ = TempFolder() / "Error.log";
  const std::shared_ptr<RecordingDesktop> desktop_ = std::make_shared<RecordingDesktop>();
  CZURDLL toolkit_;
};

/// Hands every statement on and writes its text down, with its texts for "?" in brackets.
class RecordingDriver : public Driver {
 public:
  RecordingDriver(std::unique_ptr<Driver> driver, Texts& texts)
      : driver_(std::move(driver)), texts_(texts) {}
  using Driver::Execute;
  using Driver::Prepare;
  std::unique_ptr<Statement> Prepare(std::string_view sql,
                                     std::span<const Parameter> parameters) override {
    Record(sql, parameters);
    return driver_->Prepare(sql, parameters);
  }
  std::int64_t Execute(std::string_view sql, std::span<const Parameter> parameters) override {
    Record(sql, parameters);
    return driver_->Execute(sql, parameters);
  }
  std::vector<std::string> KeyOf(const std::string& table) override {
    return driver_->KeyOf(table);
  }
  bool HasReturning() const override { return driver_->HasReturning(); }
  std::string QuotedName(std::string_view name) const override { return driver_->QuotedName(name); }

 private:
  void Record(std::string_view sql, std::span<const Parameter> parameters) {
    texts_.emplace_back(sql);
    for (const Parameter& parameter : parameters) {
      if (parameter.cell.kind != CellView::Kind::kText) continue;
      texts_.back().append(" [").append(parameter.cell.bytes).append("]");
    }
  }

  std::unique_ptr<Driver> driver_;
  Texts& texts_;
};

/// With the books of a small trader, in a real database.
class BooksTest : public ToolkitTest {
 protected:
  std::string Value1(const std::string& sql) { return toolkit_.GetField(books_, sql).ToText(); }
  std::string LastSql() const { return sqls_.empty() ? "" : sqls_.back(); }

  TestFolder folder_;
  const std::filesystem::path file_ = WriteDatabase(folder_ / "books.db", R"(
      CREATE TABLE Ledger (AccCode INTEGER PRIMARY KEY, AccName TEXT NOT NULL, City TEXT,
                           Opening CURRENCY, Rate DECIMAL, Since DATE, Active BOOLEAN,
                           Visits SMALLINT DEFAULT 7, Remarks TEXT DEFAULT 'new');
      INSERT INTO Ledger VALUES
        (1, 'Cash', 'Surat', 1250.1, '0.1', '2020-04-01', 1, 3, NULL),
        (2, 'Bank', NULL, -5, NULL, NULL, 0, 4, 'x'),
        (7, 'Shah', 'Anand', 0, '2.50', '2026-03-31', 1, 5, 'y');
      CREATE TABLE Empty (Name TEXT);)");
  Texts sqls_;
  Connection books_{std::make_unique<RecordingDriver>(
      OpenSqlite(file_, Access::kReadWrite, std::chrono::milliseconds(1)), sqls_)};
};

}  // namespace kel::testing
