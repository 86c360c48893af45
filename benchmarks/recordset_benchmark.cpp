// A client recordset beside SQLite itself over the same table, and sums beside plain addition.
//   recordset_benchmark make DATABASE ROWS
//   recordset_benchmark run DATABASE

#include <malloc.h>
#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>

#include "data/Recordset.h"
#include "data/decimal_sum.h"
#include "data/sqlite.h"
#include "side_by_side.h"

namespace {

using kel::Access;
using kel::Connection;
using kel::CursorType;
using kel::Recordset;

constexpr const char* kAllRows = "SELECT * FROM Ledger";

/// The least of three runs.
double Seconds(const std::function<void()>& work) { return kel::benchmarks::BestSeconds(3, work); }

void Check(int code, sqlite3* database) {
  if (code == SQLITE_OK || code == SQLITE_ROW || code == SQLITE_DONE) return;
  std::fprintf(stderr, "%s\n", sqlite3_errmsg(database));
  std::exit(1);
}

class BareDatabase {
 public:
  explicit BareDatabase(const char* path) { Check(sqlite3_open(path, &database_), database_); }
  ~BareDatabase() { sqlite3_close(database_); }
  BareDatabase(const BareDatabase&) = delete;
  BareDatabase& operator=(const BareDatabase&) = delete;

  void Execute(const std::string& sql) {
    Check(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr), database_);
  }
  sqlite3_stmt* Prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr), database_);
    return statement;
  }
  /// Reads every cell of every row; the results are the rows and the bytes of their values.
  std::pair<std::int64_t, std::int64_t> Read(const std::string& sql) {
    sqlite3_stmt* const statement = Prepare(sql);
    const int columns = sqlite3_column_count(statement);
    std::pair<std::int64_t, std::int64_t> seen;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      ++seen.first;
      for (int i = 0; i < columns; ++i) seen.second += Bytes(statement, i);
    }
    sqlite3_finalize(statement);
    return seen;
  }

 private:
  static int Bytes(sqlite3_stmt* statement, int column) {
    constexpr int kNumberBytes = 8;
    switch (sqlite3_column_type(statement, column)) {
      case SQLITE_INTEGER:
        return sqlite3_column_int64(statement, column) == -1 ? 0 : kNumberBytes;
      case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column) == -1.5 ? 0 : kNumberBytes;
      case SQLITE_TEXT:
        return sqlite3_column_text(statement, column) == nullptr
                   ? 0
                   : sqlite3_column_bytes(statement, column);
      default:
        return 0;
    }
  }

  sqlite3* database_ = nullptr;
};

constexpr std::array kFirst = {"Shri", "shree", "New",  "Sai",   "Maa",   "Om",      "Jai",
                               "M/s",  "RAJ",   "Anil", "Vijay", "Kumar", "Lakshmi", "Patel"};
constexpr std::array kSecond = {"Ganesh",  "krishna", "Traders", "BALAJI", "Ambica",  "Gayatri",
                                "Mahavir", "Bharat",  "sons",    "Nilesh", "Parshwa", "Umiya"};
constexpr std::array kThird = {"Traders", "Agencies", "& Co.", "Enterprise", "stores", "Textiles"};

std::string Name(std::mt19937& random) {
  const auto pick = [&](const auto& words) { return std::string(words[random() % words.size()]); };
  return pick(kFirst) + " " + pick(kSecond) + " " + pick(kThird) + " " +
         std::to_string(random() % 100000);
}

void Make(const char* path, long rows) {
  BareDatabase database(path);
  database.Execute(
      "CREATE TABLE Ledger(AccCode INTEGER PRIMARY KEY, AccName TEXT, City TEXT, Opened DATE, "
      "Opening DOUBLE, Closing DOUBLE, Narration TEXT); BEGIN");
  sqlite3_stmt* const insert = database.Prepare("INSERT INTO Ledger VALUES (?,?,?,?,?,?,?)");
  std::mt19937 random(7);  // NOLINT: the same table every time
  for (long row = 1; row <= rows; ++row) {
    const std::string name = Name(random);
    const std::string city = "City " + std::to_string(random() % 300);
    std::array<char, 32> day{};
    std::snprintf(day.data(), day.size(), "20%02u-%02u-%02u", unsigned(random() % 27),
                  unsigned(random() % 12 + 1), unsigned(random() % 28 + 1));
    const std::string narration = "being amount no. " + std::to_string(random() % 1000000);
    sqlite3_bind_int64(insert, 1, row);
    sqlite3_bind_text(insert, 2, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(insert, 3, city.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(insert, 4, day.data(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(insert, 5, static_cast<double>(random() % 100000000) / 100);
    sqlite3_bind_double(insert, 6, static_cast<double>(random() % 100000000) / 100);
    sqlite3_bind_text(insert, 7, narration.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(insert);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  database.Execute("COMMIT");
}

std::size_t HeapBytes() {
  const struct mallinfo2 heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

void Print(const char* what, double ours, const char* yardstick, double theirs, const char* bound) {
  std::printf("recordset: %s %.3f s, %s %.3f s, ratio %.2f (%s)\n", what, ours, yardstick, theirs,
              ours / theirs, bound);
}

void Run(const char* path) {
  BareDatabase bare(path);
  Connection books(kel::OpenSqlite(path, Access::kRead));
  const auto [rows, value_bytes] = bare.Read(kAllRows);
  std::printf("recordset: %lld rows\n", static_cast<long long>(rows));

  Recordset records;
  const double opened = Seconds([&] {
    records.Close();
    records.Open(kAllRows, books, CursorType::kStatic);
  });
  Print("open", opened, "bare loop", Seconds([&] { bare.Read(kAllRows); }), "at most 1.5");
  records.Close();
  const std::size_t before = HeapBytes();
  records.Open(kAllRows, books, CursorType::kStatic);
  const double held = static_cast<double>(HeapBytes() - before);
  std::printf("recordset: memory %.1f MB, values %.1f MB, ratio %.2f (at most 2)\n", held / 1e6,
              static_cast<double>(value_bytes) / 1e6, held / static_cast<double>(value_bytes));

  const auto sort = [&](const char* fields, const std::string& order) {
    const double ours = Seconds([&] {
      records.Sort("");
      records.Sort(fields);
    });
    const double theirs =
        Seconds([&] { bare.Read("SELECT AccCode FROM Ledger ORDER BY " + order); });
    Print(fields, ours, ("ORDER BY " + order).c_str(), theirs, "at most 1");
  };
  sort("[AccName]", "AccName COLLATE NOCASE");
  sort("[City] DESC,[AccName]", "City COLLATE NOCASE DESC, AccName COLLATE NOCASE");
  sort("[Opening]", "Opening");
  records.Sort("");

  const auto filter = [&](const char* condition, const std::string& where) {
    std::int64_t matches = 0;
    const double ours = Seconds([&] {
      records.Filter("");
      records.Filter(condition);
      matches = records.RecordCount();
    });
    std::int64_t theirs_found = 0;
    const double theirs = Seconds(
        [&] { theirs_found = bare.Read("SELECT AccCode FROM Ledger WHERE " + where).first; });
    Print(condition, ours, "WHERE", theirs, "at most 0.33");
    if (matches != theirs_found) {
      std::fprintf(stderr, "%s: %lld rows, SQLite %lld\n", condition,
                   static_cast<long long>(matches), static_cast<long long>(theirs_found));
      std::exit(1);
    }
  };
  filter("[Opening] >= 500000", "Opening >= 500000");
  filter("[AccName] = 'SHREE SONS & CO. 777'", "AccName = 'SHREE SONS & CO. 777' COLLATE NOCASE");
  filter("[AccName] Like 'shr*'", "AccName LIKE 'shr%'");
  filter("[Narration] Like '*999*' AND [Opened] > #31/March/2020#",
         "Narration LIKE '%999%' AND Opened > '2020-03-31'");
  records.Filter("");

  kel::DecimalSum sum;
  const double ours = kel::benchmarks::Seconds([&] {
    for (records.MoveFirst(); !records.EndOfFile(); records.MoveNext()) {
      sum.Add(records.FieldCell(4));
    }
  });
  Print("exact sum", ours, "SUM()", Seconds([&] { bare.Read("SELECT SUM(Opening) FROM Ledger"); }),
        "printed only");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && std::string(argv[1]) == "make") {
    Make(argv[2], std::atol(argv[3]));
  } else if (argc == 3 && std::string(argv[1]) == "run") {
    Run(argv[2]);
  } else {
    std::fputs("usage: recordset_benchmark make DATABASE ROWS | run DATABASE\n", stderr);
    return 2;
  }
  return 0;
}
