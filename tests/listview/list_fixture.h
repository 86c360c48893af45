// What the tests of the list share: a day book in a real database, shown by a model, and a screen
// that is written down.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/host.h"
#include "common/job_values.h"
#include "data/sqlite.h"
#include "listview/CListView.h"
#include "listview/list_model.h"
#include "support/errors.h"
#include "support/fixed_clock.h"
#include "support/recording_desktop.h"
#include "support/sqlite_file.h"
#include "support/test_folder.h"

namespace kel::testing {

template <typename Operation>
int ErrorNumber(Operation operation) {
  return ErrorOf(operation).Number();
}

class ListTest : public ::testing::Test {
 public:
  ~ListTest() override { CurrentList() = {}; }

 protected:
  ListTest() {
    CurrentHost().desktop = desktop_;
    CurrentHost().clock = std::make_shared<FixedClock>();
    CurrentJob() = {};
    CurrentList() = {};
    CurrentList().cnn = std::make_shared<Connection>(OpenSqlite(file_, Access::kReadWrite));
    Show("SELECT * FROM DayBook");
  }

  void Show(const std::string& sql, const Value& alignment = Value()) {
    records_ = std::make_shared<Recordset>();
    records_->FetchesInSlices(true);
    records_->Open(sql, *CurrentList().cnn, CursorType::kKeyset, LockType::kOptimistic);
    CurrentList().rdset = records_;
    model_.LoadCaption();
    model_.Bind(alignment);
  }
  /// A column of the rows as they are seen, "|" between them.
  std::string Seen(int column) const {
    std::string texts;
    for (std::int64_t row = 0; row < model_.Rows(); ++row) {
      if (row > 0) texts += '|';
      model_.AppendText(row, column, texts);
    }
    return texts;
  }
  /// The current record's number; what a first column "Id" holds.
  std::string Current() const {
    return records_->BeginOfFile() ? "BOF" : std::string(records_->FieldText(0));
  }

  TestFolder folder_;
  const std::filesystem::path file_ = WriteDatabase(folder_ / "books.db", R"(
      CREATE TABLE DayBook (Id INTEGER PRIMARY KEY, Day DATE, Name TEXT, Amount DOUBLE,
                            Rate DECIMAL, Remarks MEMO, CHECK (Amount < 1000000));
      INSERT INTO DayBook VALUES
        (1, '2026-03-05', 'shah', 0.1, '0.10', 'opening'),
        (2, '2026-04-01', 'Bank', 0.2, NULL, NULL),
        (3, NULL, 'SHAH', -1250.5, '2.5', 'x'),
        (4, '2026-03-05', '', 1000, '1.005', 'paid in two parts, the second one late'),
        (5, '2026-12-31', NULL, NULL, '7', 'y');)");
  const std::shared_ptr<RecordingDesktop> desktop_ = std::make_shared<RecordingDesktop>();
  std::shared_ptr<Recordset> records_;
  ListModel model_;
};

}  // namespace kel::testing
