// Operations of CZURDLL over controls that do nothing, beside the same statements through SQLite's
// own interface.
//   toolkit_benchmark DATABASE      as recordset_benchmark makes it, 100,000 rows or more

#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/names.h"
#include "common/object.h"
#include "data/sqlite.h"
#include "side_by_side.h"
#include "toolkit/CZURDLL.h"

namespace {

using kel::Arguments;
using kel::Object;
using kel::Value;

constexpr int kRuns = 3;
constexpr int kRecords = 20000;
constexpr std::array kNames = {"AccCode", "AccName", "City",     "Opened",
                               "Opening", "Closing", "Narration"};

/// The least of some runs.
double Seconds(const std::function<void()>& work) {
  return kel::benchmarks::BestSeconds(kRuns, work);
}

/// A control that takes everything and keeps one text.
class IdleControl : public Object {
 public:
  explicit IdleControl(Value text) : text_(std::move(text)) {}
  std::string TypeName() const override { return "TextBox"; }
  MemberId Resolve(std::string_view /*name*/) override { return 1; }
  Value Get(MemberId /*member*/, std::span<const Value> /*indexes*/) override { return text_; }
  void Put(MemberId /*member*/, const Value& /*value*/,
           std::span<const Value> /*indexes*/) override {}
  Value Call(MemberId /*member*/, Arguments& /*arguments*/) override {
    ++calls_;
    return {};
  }
  long Calls() const { return calls_; }

 private:
  Value text_;
  long calls_ = 0;
};

class IdleControls : public Object {
 public:
  std::string TypeName() const override { return "Controls"; }
  MemberId Resolve(std::string_view /*name*/) override { return 1; }
  Value Get(MemberId /*member*/, std::span<const Value> indexes) override {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
      if (kel::SameName(kNames.at(i), indexes[0].String())) return controls_[i];
    }
    throw kel::Error(730, "no control " + indexes[0].String());  // NOLINT: the published number
  }
  void Put(MemberId /*member*/, const Value& /*value*/,
           std::span<const Value> /*indexes*/) override {}
  Value Call(MemberId member, Arguments& arguments) override {
    return Get(member, arguments.positional);
  }

 private:
  static Value::ObjectPtr Holding(Value text) { return std::make_shared<IdleControl>(text); }

  std::vector<Value::ObjectPtr> controls_ = {Holding("0"),
                                             Holding("Shri Ganesh Traders"),
                                             Holding("Ahmedabad"),
                                             Holding("31/03/2026"),
                                             Holding("1250.5"),
                                             Holding("99.75"),
                                             Holding("being the amount received")};
};

class IdleForm : public IdleControl {
 public:
  IdleForm() : IdleControl(Value(Value::ObjectPtr(std::make_shared<IdleControls>()))) {}
  std::string TypeName() const override { return "Form"; }
};

class Bare {
 public:
  explicit Bare(const char* path) { Check(sqlite3_open(path, &database_)); }
  ~Bare() { sqlite3_close(database_); }
  Bare(const Bare&) = delete;
  Bare& operator=(const Bare&) = delete;

  void Execute(const char* sql) { Check(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr)); }

  /// Runs a statement and looks at every cell; `bind` may give it values first.
  long Run(const std::string& sql, const std::function<void(sqlite3_stmt*)>& bind = {}) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr));
    if (bind) bind(statement);
    const int columns = sqlite3_column_count(statement);
    long rows = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      ++rows;
      for (int i = 0; i < columns; ++i) {
        if (sqlite3_column_type(statement, i) == SQLITE_TEXT) {
          bytes_ += static_cast<long>(*sqlite3_column_text(statement, i));
        } else {
          bytes_ += sqlite3_column_int64(statement, i) & 1;
        }
      }
    }
    Check(sqlite3_finalize(statement));
    return rows;
  }

 private:
  void Check(int code) {
    if (code == SQLITE_OK) return;
    std::fprintf(stderr, "%s\n", sqlite3_errmsg(database_));
    std::exit(1);
  }

  sqlite3* database_ = nullptr;
  long bytes_ = 0;
};

void Print(const char* what, double ours, double theirs, const char* bound) {
  std::printf("toolkit: %s %.3f s, bare driver %.3f s, ratio %.2f (at most %s)\n", what, ours,
              theirs, ours / theirs, bound);
}

void RequireSuccess(const kel::CZURDLL& zur) {
  if (!zur.LastError()) return;
  std::fprintf(stderr, "%s\n", zur.LastError()->what());
  std::exit(1);
}

std::string RowOf(int record, const char* fields) {
  return std::string("SELECT ") + fields +
         " FROM Ledger WHERE AccCode = " + std::to_string(record * 7 % 100000 + 1);
}

void BindRecord(sqlite3_stmt* insert) {
  sqlite3_bind_text(insert, 1, "Shri Ganesh Traders", -1, SQLITE_STATIC);
  sqlite3_bind_text(insert, 2, "Ahmedabad", -1, SQLITE_STATIC);
  sqlite3_bind_text(insert, 3, "2026-03-31", -1, SQLITE_STATIC);
  sqlite3_bind_double(insert, 4, 1250.5);
  sqlite3_bind_double(insert, 5, 99.75);
  sqlite3_bind_text(insert, 6, "being the amount received", -1, SQLITE_STATIC);
}

void Run(const char* path) {
  Bare bare(path);
  kel::Connection books(kel::OpenSqlite(path, kel::Access::kReadWrite));
  kel::CZURDLL zur;
  zur.OnError([](std::int32_t&, std::string&, bool& Response) { Response = false; });

  IdleControl list(Value(""));
  const std::string table = "(SELECT AccName FROM Ledger LIMIT 100000)";
  const double filled = Seconds([&] { zur.FillControl(books, list, table, "AccName"); });
  RequireSuccess(zur);
  const std::string statement = "SELECT DISTINCT AccName FROM " + table +
                                " WHERE AccName Like('%') AND AccName Is Not Null ORDER BY AccName";
  long rows = 0;
  Print("FillControl", filled, Seconds([&] { rows = bare.Run(statement); }), "1.5");
  if (list.Calls() != kRuns * (rows + 1)) {
    std::fprintf(stderr, "%ld items of %ld rows\n", list.Calls(), rows);
    std::exit(1);
  }
  const std::string whole = "SELECT AccName, City, Opening FROM Ledger LIMIT 100000";
  Print("FillControlSQL", Seconds([&] { zur.FillControlSQL(books, list, whole); }),
        Seconds([&] { bare.Run(whole); }), "1.5");

  Print("GetField", Seconds([&] {
          for (int i = 0; i < kRecords; ++i) zur.GetField(books, RowOf(i, "AccName"));
        }),
        Seconds([&] {
          for (int i = 0; i < kRecords; ++i) bare.Run(RowOf(i, "AccName"));
        }),
        "2");
  RequireSuccess(zur);

  IdleForm form;
  Print("SetSQLFields", Seconds([&] {
          for (int i = 0; i < kRecords; ++i) zur.SetSQLFields(books, form, RowOf(i, "*"));
        }),
        Seconds([&] {
          for (int i = 0; i < kRecords; ++i) bare.Run(RowOf(i, "*"));
        }),
        "2");
  RequireSuccess(zur);

  books.Execute("BEGIN");
  const double saved = Seconds([&] {
    for (int i = 0; i < kRecords; ++i) zur.Save(books, form, "Ledger", ";AccCode;");
  });
  RequireSuccess(zur);
  books.Execute("ROLLBACK");
  bare.Execute("BEGIN");
  Print("Save", saved, Seconds([&] {
          for (int i = 0; i < kRecords; ++i) {
            bare.Run("SELECT * FROM Ledger WHERE 1=2");
            bare.Run(
                "INSERT INTO Ledger (AccName, City, Opened, Opening, Closing, Narration) VALUES "
                "(?, ?, ?, ?, ?, ?) RETURNING *",
                BindRecord);
          }
        }),
        "2");
  bare.Execute("ROLLBACK");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: toolkit_benchmark DATABASE\n", stderr);
    return 2;
  }
  Run(argv[1]);
  return 0;
}
