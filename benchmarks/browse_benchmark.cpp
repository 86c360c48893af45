// The list window without its window, over a table and one of ten times its rows; and its report
// beside the report engine over the same rows and `cat` of the page file.
//   browse_benchmark list DATABASE LARGER     tables of recordset_benchmark
//   browse_benchmark report DATABASE

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "data/sqlite.h"
#include "engine/CPrint.h"
#include "engine/recordset_grid.h"
#include "listview/list_model.h"
#include "listview/list_report.h"
#include "side_by_side.h"

namespace {

using kel::Value;
using kel::benchmarks::Cat;
using kel::benchmarks::Seconds;

constexpr int kRuns = 3;
constexpr double kForever = std::numeric_limits<double>::max();

void Check(const std::optional<kel::Error>& failure) {
  if (failure) throw kel::Error(*failure);
}

/// A list whose rows arrive as those of the list window do.
class List {
 public:
  explicit List(const char* path)
      : books_(std::make_shared<kel::Connection>(kel::OpenSqlite(path, kel::Access::kRead))) {
    settings_.cnn = books_;
    settings_.rdset = std::make_shared<kel::Recordset>();
    settings_.rdset->FetchesInSlices(true);
  }

  kel::Recordset& Records() { return *settings_.rdset; }
  kel::ListModel& Model() { return model_; }

  void Open() {
    Records().Close();
    Records().Open("SELECT * FROM Ledger", *books_, kel::CursorType::kKeyset);
    model_.Bind(Value());
  }
  void OpenToFirstScreen() {
    Open();
    Records().Fetch(kScreenRows);
    ReadScreen(0);
  }
  void Load() {
    while (model_.IsLoading()) model_.Load(std::chrono::milliseconds(10));  // NOLINT: an idle slice
  }
  void ReadScreen(std::int64_t top) {
    text_.clear();
    for (std::int64_t row = top; row < top + kScreenRows; ++row) {
      for (int column = 0; column < Records().FieldCount(); ++column) {
        model_.AppendText(row, column, text_);
      }
    }
  }
  /// As a person does who drags the scroll bar about.
  void ReadScreensAnywhere() {
    std::mt19937_64 random(7);  // NOLINT: the same places every time
    const auto last_top = static_cast<std::uint64_t>(model_.Rows() - kScreenRows);
    for (int i = 0; i < kScreens; ++i) ReadScreen(static_cast<std::int64_t>(random() % last_top));
  }

  static constexpr int kScreens = 1000;
  static constexpr std::int64_t kScreenRows = 40;

 private:
  std::shared_ptr<kel::Connection> books_;
  kel::ListSettings settings_;
  kel::ListModel model_{settings_};
  std::string text_;
};

constexpr int kNameColumn = 1;
constexpr const char* kFewNames = "[AccName] Like 'Om g*'";

void CompareLists(const char* path, const char* larger_path) {
  List small(path);
  List large(larger_path);
  using Step = std::function<void(List&)>;
  const auto compare = [&](const char* what, int times, const char* bound, const Step& prepare,
                           const Step& step) {
    double best = kForever;
    double larger = kForever;
    for (int run = 0; run < kRuns; ++run) {
      for (List* const list : {&small, &large}) {
        prepare(*list);
        double& least = list == &small ? best : larger;
        least = std::min(least, Seconds([&] { step(*list); }) / times);
      }
    }
    std::printf("browse: %s %.3f ms, with ten times the rows %.3f ms, ratio %.2f (%s)\n", what,
                best * 1e3, larger * 1e3, larger / best, bound);
    std::fflush(stdout);
  };
  const Step nothing = [](List&) {};

  compare("open to the first screen", 1, "at most 1.3", nothing,
          [](List& list) { list.OpenToFirstScreen(); });
  compare(
      "read all rows", 1, "about 10", [](List& list) { list.Open(); },
      [](List& list) { list.Load(); });
  compare("a screen", List::kScreens, "at most 1.3", nothing,
          [](List& list) { list.ReadScreensAnywhere(); });
  compare(
      "sort", 1, "about 10", [](List& list) { list.Records().Sort(""); },
      [](List& list) { list.Model().SortAscending(-1, -1, kNameColumn); });
  compare("a screen of sorted rows", List::kScreens, "at most 2: they lie anywhere in memory",
          nothing, [](List& list) { list.ReadScreensAnywhere(); });
  compare("last record", 1, "at most 1.3", nothing, [](List& list) {
    list.Model().MoveLast();
    list.ReadScreen(list.Records().AbsolutePosition() - List::kScreenRows);
  });
  compare("first record", 1, "at most 1.3", nothing, [](List& list) {
    list.Model().MoveFirst();
    list.ReadScreen(list.Records().AbsolutePosition() - 1);
  });
  compare(
      "filter sorted rows", 1, "about 10", [](List& list) { list.Records().Filter(""); },
      [](List& list) { list.Model().ApplyFilter(kFewNames); });
  compare(
      "filter", 1, "about 10",
      [](List& list) {
        list.Records().Sort("");
        list.Records().Filter("");
      },
      [](List& list) { list.Model().ApplyFilter(kFewNames); });
}

constexpr const char* kReported = "SELECT AccCode, AccName, City, Opening, Narration FROM Ledger";
constexpr std::array<int, 5> kWidths = {8, 36, 9, 14, 32};
constexpr int kTotalled = 3;
constexpr int kCharactersOfALine = 132;
constexpr int kTwipsOfACharacter = 120;

std::vector<kel::ListColumn> ReportedColumns(const kel::Recordset& records) {
  std::vector<kel::ListColumn> columns = kel::MakeColumns(records);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    columns[i].width = kWidths.at(i) * kTwipsOfACharacter;
  }
  columns[kTotalled].format = kel::FormatPattern("#,##0.00");
  return columns;
}

void Report(const char* path) {
  kel::Connection books(kel::OpenSqlite(path, kel::Access::kRead));
  kel::Recordset records;
  records.Open(kReported, books, kel::CursorType::kStatic);
  const auto rows = static_cast<double>(records.RecordCount());
  const std::vector<kel::ListColumn> columns = ReportedColumns(records);
  std::string total;
  kel::AddColumn(total, kTotalled);

  kel::CPrint print;
  print.Cols(kCharactersOfALine);
  print.EndPage(std::numeric_limits<kel::PageNumber>::max());
  double list = kForever;
  double engine = kForever;
  double cat = kForever;
  for (int run = 0; run < kRuns; ++run) {
    list = std::min(
        list, Seconds([&] { kel::WriteListReport(records, columns, "Ledger", total, print); }));
    const std::string page_file = print.GetKelFile();
    const std::string copy = page_file + ".copy";
    cat = std::min(cat, Seconds([&] { Cat(page_file, copy); }));
    std::filesystem::remove(copy);
    records.MoveFirst();
    print.ColWidth(Value::Array(kWidths.begin(), kWidths.end()));
    engine = std::min(engine, Seconds([&] {
                        kel::RecordsetGrid grid(records, "Ledger");
                        print.PrepareReport(grid, 0, 0, kel::kLastRow, grid.Cols() - 1, 0);
                      }));
    Check(print.LastError());
  }
  std::printf(
      "browse: list report of %.0f rows %.3f s (%.0f ns a row), report engine %.3f s, "
      "ratio %.2f (at most 1.3), cat %.3f s, ratio %.2f (printed only)\n",
      rows, list, list / rows * 1e9, engine, list / engine, cat, list / cat);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "";
  if (what == "list" && argc == 4) {
    CompareLists(argv[2], argv[3]);
  } else if (what == "report" && argc == 3) {
    Report(argv[2]);
  } else {
    std::fputs("usage: browse_benchmark list DATABASE LARGER | report DATABASE\n", stderr);
    return 2;
  }
  return 0;
}
