#include "engine/CPrint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "common/host.h"
#include "common/temp_folder.h"
#include "engine/memory_grid.h"
#include "engine/print_settings.h"
#include "support/errors.h"
#include "support/fixed_clock.h"
#include "support/paper.h"
#include "support/recording_desktop.h"
#include "support/test_folder.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

namespace fs = std::filesystem;
using testing::ReadFile;
using Strings = std::vector<std::string>;

// Answers as it is told, and keeps what it was asked.
class TestWindows : public ReportWindows {
 public:
  std::optional<PageRange> AskPageRange(std::int32_t page_count) override {
    asked_pages = page_count;
    return answer;
  }
  void AskStartPage(JobValues& job) override { TakeStartPage(job, start_page); }
  void ShowPreview(const ReportSnapshot& report, ShowStyle style) override {
    shown.emplace_back(report, style);
  }
  void ShowSetup() override { ++setups; }

  int setups = 0;
  std::int32_t asked_pages = 0;
  std::optional<PageRange> answer;
  std::string start_page = "1";
  std::vector<std::pair<ReportSnapshot, ShowStyle>> shown;
};

class CPrintTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CurrentHost() = {store, std::make_shared<testing::FixedClock>(), desktop};
    CurrentJob() = {};
    CurrentReportHost() = {windows, port, printer};
    for (int i = 0; i < 40; ++i) grid.AddRow({i == 0 ? "No" : std::to_string(i), "x"});
  }

  // Number of the error that preparing ends with; 0 when it succeeds.
  int Prepare(CPrint& print, PageNumber start = 0, Value widths = Value::Array{5, 20},
              std::int32_t last_row = 39) {
    print.ColWidth(std::move(widths));
    print.Lines(12);
    print.PrepareReport(grid, 0, 0, last_row, 1, start);
    return print.LastError() ? print.LastError()->Number() : 0;
  }

  std::shared_ptr<MemorySettingsStore> store = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<testing::RecordingDesktop> desktop =
      std::make_shared<testing::RecordingDesktop>();
  std::shared_ptr<TestWindows> windows = std::make_shared<TestWindows>();
  // What text mode printed: the jobs, and the page files by their names.
  Strings Printed() const {
    Strings files;
    for (const PortJob& job : port->jobs) files.push_back(job.parts[1].file.filename().string());
    return files;
  }

  std::shared_ptr<testing::RecordingPort> port = std::make_shared<testing::RecordingPort>();
  std::shared_ptr<testing::RecordingPrinter> printer =
      std::make_shared<testing::RecordingPrinter>();
  MemoryGrid grid{"Day Book"};
};

TEST_F(CPrintTest, AFreshUserGetsThePublishedDefaults) {
  const CPrint print;
  EXPECT_FALSE(print.LastError());
  EXPECT_EQ((Value::Array{print.ColWidth(), print.ReportTitle(), print.PageTitle()}),
            (Value::Array{"", "", ""}));
  EXPECT_EQ((Strings{print.Mode(), print.PrinterDevice(), print.Port(), print.Font(),
                     print.UnderLineChar()}),
            (Strings{"DOS", "Epson LX-800", "LPT1:", "10 cpi", "-"}));
  EXPECT_TRUE(print.ReBuild() && print.PrintDateTime() && print.Portrait());
  EXPECT_FALSE(print.PrintColumnDivider());
  EXPECT_EQ((std::vector{print.TopMargin(), print.BottomMargin(), print.LeftMargin(),
                         print.RightMargin(), print.Lines(), print.Cols(), print.Pages(),
                         print.CurrentPage(), print.StartPage(), print.EndPage()}),
            (std::vector{5, 1, 0, 0, 60, 80, 0, 1, 1, 10000}));
  EXPECT_EQ((std::vector{print.PageHeight(), print.PageWidth()}), (std::vector{12.0F, 8.5F}));
}

TEST_F(CPrintTest, RefreshReadsTheSectionOfTheStoredMode) {
  store->Write("Setup\\DOS", "Lines", "33");
  store->Write("Setup\\Windows", "Portrait", "False");
  CPrint print;
  EXPECT_EQ(std::tuple(print.Lines(), print.Portrait()), std::tuple(33, false));

  store->Write("Setup", "Mode", "WINDOWS");
  store->Write("Setup\\Windows", "LeftMargin", "4");
  store->Write("Setup\\Windows", "PageWidth", "14.5");
  print.EndPage(3);
  print.Lines(7);
  EXPECT_EQ(print.Lines(), 7);
  print.Refresh();
  EXPECT_EQ(std::tuple(print.Mode(), print.Font(), print.FontSize(), print.PageWidth()),
            std::tuple("WINDOWS", "Courier New", 10.0F, 14.5F));
  EXPECT_EQ(std::tuple(print.Lines(), print.Cols(), print.LeftMargin()), std::tuple(65, 96, 4));
  EXPECT_EQ(print.EndPage(), 3) << "EndPage is not stored";
  EXPECT_FALSE(store->Read("Setup\\DOS", "EndPage").has_value());
}

TEST_F(CPrintTest, AStoredTextOfTheWrongTypeLeavesItsDefaultAndIsTold) {
  constexpr const char* kDos = "Setup\\DOS";
  for (const auto& [section, key, text] :
       {std::tuple(kDos, "Lines", "sixty"), std::tuple(kDos, "Lines", ""),
        std::tuple(kDos, "Lines", "99999"), std::tuple(kDos, "Lines", "6.5"),
        std::tuple(kDos, "Lines", "0x40"), std::tuple("Setup\\Windows", "Portrait", "yes"),
        std::tuple(kDos, "TopMargin", "32768"), std::tuple(kDos, "PageWidth", "1e40"),
        std::tuple(kDos, "PageWidth", "inf"), std::tuple(kDos, "PageWidth", "8.5in")}) {
    store = std::make_shared<MemorySettingsStore>();
    CurrentHost().settings = store;
    store->Write(section, key, text);
    const CPrint print;
    ASSERT_TRUE(print.LastError()) << text;
    EXPECT_EQ(print.LastError()->Number(), error_number::kTypeMismatch);
    EXPECT_TRUE(testing::Contains(*print.LastError(), std::string(section) + "/" + key));
    EXPECT_TRUE(print.Lines() == 60 && print.TopMargin() == 5 && print.PageWidth() == 8.5F);
    EXPECT_TRUE(print.Cols() == 80 && print.Portrait()) << "what comes after it is loaded";
  }
}

TEST_F(CPrintTest, PreparingStoresTheJobValues) {
  CPrint print;
  print.LeftMargin(3);
  print.RightMargin(4);
  ASSERT_EQ(Prepare(print, 5), 0);
  const JobValues& job = CurrentJob();
  EXPECT_EQ(std::tuple(job.first_page, job.page_width, job.page_length, job.page_count),
            std::tuple(5, 26 + 3 + 4, 5 + 12 + 1, print.Pages()));
  EXPECT_EQ(print.CurrentPage(), print.Pages() + 4);
  EXPECT_FALSE(print.ReBuild());
  const std::string text = ReadFile(print.GetKelFile());
  EXPECT_NE(text.find("   Day Book" + std::string(11, ' ') + " Page 5\r\n"), std::string::npos);
  EXPECT_NE(text.find("15/11/2026 02:05:09 PMEnd \r\n"), std::string::npos);
  ASSERT_EQ(job.page_offsets->size(), static_cast<std::size_t>(job.page_count));
  std::vector<std::string> calls(42, "step 1 -");
  calls.front() = "wait Preparing Pages... 0..39";
  calls.back() = "unload";
  EXPECT_EQ(desktop->calls, calls);
}

TEST_F(CPrintTest, AFailureLeavesTheFileBeforeAndGoesDownTheCommonErrorPath) {
  CPrint print;
  Prepare(print);
  const std::string before = ReadFile(print.GetKelFile());
  const PageNumber pages = CurrentJob().page_count;
  const Value::Array widths = {5, 20};

  print.ReBuild(true);
  EXPECT_EQ(Prepare(print, 0, widths, 99), error_number::kSubscriptOutOfRange);
  EXPECT_EQ(ReadFile(print.GetKelFile()), before);
  EXPECT_TRUE(print.ReBuild());
  EXPECT_EQ(CurrentJob().page_count, pages);
  EXPECT_EQ(std::count(desktop->calls.begin(), desktop->calls.end(), "unload"), 2);
  EXPECT_EQ(desktop->messages.at(0).prompt.rfind("9 : Subscript out of range", 0), 0U);
  EXPECT_NE(ReadFile(TempFolder() / "Error.log").find("[DLL.PrepareReport],9 : "),
            std::string::npos);
  EXPECT_EQ(Prepare(print, 0, ""), error_number::kTypeMismatch);
  EXPECT_EQ(Prepare(print, 0, Value::Array{"wide", 3}), error_number::kTypeMismatch);
  EXPECT_EQ(Prepare(print, 0, Value::Array{"5", 20.0}), 0) << "the next operation starts afresh";
}

TEST_F(CPrintTest, ThePageRangeIsCutOutOfTheLastPreparedFile) {
  CPrint print;
  print.CopyPageRange(1, 1);
  EXPECT_EQ(print.LastError()->Number(), error_number::kInvalidProcedureCall);
  Prepare(print);
  ASSERT_GE(print.Pages(), 3);
  desktop->calls.clear();
  print.CopyPageRange(2, 3);
  ASSERT_FALSE(print.LastError());
  EXPECT_EQ(desktop->calls.front().rfind("wait Printing Pages (2-3)", 0), 0U);
  const std::vector<std::uint64_t>& offsets = *CurrentJob().page_offsets;
  EXPECT_EQ(ReadFile(print.PageRangeFile()),
            ReadFile(print.GetKelFile()).substr(offsets[1], offsets[3] - offsets[1]));
}

TEST_F(CPrintTest, PreviewPreparesOnlyWhenItHasToAndHandsOutASnapshot) {
  CPrint print;
  print.ColWidth(Value::Array{5, 20});
  print.Lines(12);
  const fs::path left_over = TempFolder() / "_kelHeld1.rpt";
  testing::WriteFile(left_over, "of a killed process");
  print.PrintPreview(grid, 0, 0, 39, 1, 1);
  ASSERT_EQ(windows->shown.size(), 1U);
  EXPECT_FALSE(fs::exists(left_over) && ReadFile(left_over) == "of a killed process");
  const auto& [first, style] = windows->shown[0];
  EXPECT_EQ(style, ShowStyle::kModal);
  const std::string on_show = ReadFile(first.page_file);
  EXPECT_EQ(on_show, ReadFile(print.GetKelFile()));
  EXPECT_EQ(std::tuple(first.job.page_count, first.job.page_length, first.settings.lines),
            std::tuple(print.Pages(), 18, 12));
  EXPECT_EQ(first.col_width, (Value::Array{5, 20}));

  print.Lines(20);
  print.PrintPreview(grid);
  EXPECT_EQ(windows->shown[1].first.job.page_length, 18) << "nothing was prepared again";
  EXPECT_EQ(windows->shown[1].second, ShowStyle::kModeless);
  windows->start_page = "7";
  print.PrintPreview(grid, {}, {}, {}, {}, 0, true);
  EXPECT_EQ(windows->shown[2].first.job.page_length, 26);
  EXPECT_EQ(windows->shown[2].first.job.first_page, 7);
  EXPECT_EQ(ReadFile(windows->shown[0].first.page_file), on_show) << "a later report is another";
  EXPECT_EQ(print.Pages(), print.CurrentPage() - 6);
  print.PrintPreview(grid, {}, {}, {}, {}, 0, true);
  EXPECT_EQ(CurrentJob().start_page_changed, false);

  windows->start_page = "9";
  print.EndPage(8);
  print.PrintPreview(grid, {}, {}, {}, {}, 0, true);
  EXPECT_EQ(print.LastError()->Number(), error_number::kInvalidProcedureCall);
  EXPECT_EQ(CurrentJob().first_page, 7) << "a first page that cannot be is not kept";
  print.EndPage(10000);

  print.ReBuild(true);
  print.PrintPreview(grid, 0, 0, 99);
  EXPECT_EQ(print.LastError()->Number(), error_number::kSubscriptOutOfRange);
  EXPECT_EQ(windows->shown.size(), 4U) << "a failed report is not shown";
}

TEST_F(CPrintTest, WithoutAPreparedReportThereIsNothingToShowOrPrint) {
  CPrint print;
  print.ReBuild(false);
  for (const bool preview : {true, false}) {
    if (preview) print.PrintPreview(grid);
    if (!preview) print.PreparePrint(grid);
    ASSERT_TRUE(print.LastError());
    EXPECT_TRUE(testing::Contains(*print.LastError(), "no report has been prepared"));
  }
  EXPECT_TRUE(windows->shown.empty() && windows->asked_pages == 0);
}

TEST_F(CPrintTest, PrintingTakesTheChosenPagesAndThenTheWholeReportAgain) {
  CPrint print;
  print.ColWidth(Value::Array{5, 20});
  print.Lines(12);
  print.PreparePrint(grid);
  EXPECT_TRUE(port->jobs.empty()) << "cancelled";
  EXPECT_EQ(windows->asked_pages, print.Pages());

  windows->answer = PageRange{1, print.Pages()};
  print.PreparePrint(grid);
  windows->answer = PageRange{2, print.Pages()};
  print.PreparePrint(grid);
  windows->answer = PageRange{1, print.Pages()};
  print.PreparePrint(grid);
  EXPECT_EQ(Printed(), (Strings{"_kelFile.rpt", "_kelFile.kel", "_kelFile.rpt"}));

  print.CopyPageRange(2, 2);
  print.PreparePrint(grid);
  EXPECT_EQ(Printed().back(), "_kelFile.rpt") << "an earlier range is not printed";

  print.StartPage(3);
  print.PreparePrint(grid);
  EXPECT_EQ(Printed().back(), "_kelFile.kel") << "From is not StartPage";
  CurrentReportHost().printer_port = nullptr;
  print.PreparePrint(grid);
  EXPECT_EQ(print.LastError()->Number(), error_number::kPrinterError);
}

TEST_F(CPrintTest, WhileOneReportIsPrintedAnotherIsRefusedAndTheFirstIsWhole) {
  CPrint print;
  ASSERT_EQ(Prepare(print), 0);
  print.Mode("WINDOWS");
  CPrint other;
  printer->on_sheet = [&] {
    printer->on_sheet = nullptr;
    Prepare(other);  // as a button of the program does while the wait window lets events through
    EXPECT_TRUE(testing::Contains(*other.LastError(), "another report is being"));
  };
  print.PrintReport();
  EXPECT_FALSE(print.LastError());
  EXPECT_EQ(static_cast<std::int32_t>(printer->sheets.size()), print.Pages());
  EXPECT_TRUE(printer->ended);
  EXPECT_EQ(Prepare(other), 0);
}

TEST_F(CPrintTest, TextModeSendsSetUpPagesAndReset) {
  CPrint print;
  ASSERT_EQ(Prepare(print), 0);
  print.Port(" ");
  store->Write("Setup\\DOS", "CodePage", "CP850");
  print.PrintReport();
  ASSERT_FALSE(print.LastError());
  EXPECT_EQ(print.Port(), "LPT1:");
  EXPECT_EQ(port->jobs[0].port, "LPT1:");
  EXPECT_EQ(port->jobs[0].title, "Day Book");
  EXPECT_EQ(port->jobs[0].code_page, "CP850");
  EXPECT_TRUE(port->jobs[0].parts[1].is_text);
  EXPECT_FALSE(port->jobs[0].parts[0].is_text || port->jobs[0].parts[2].is_text);
  const std::string pages = ReadFile(print.GetKelFile());
  EXPECT_EQ(port->sent,
            (Strings{std::string("\033C\0\x0c\033P", 6), pages, std::string("\033C\0\0\033@", 6)}));
  // Another height asks for other files.
  print.PageHeight(11);
  print.PrintReport();
  EXPECT_EQ(port->sent[0][3], 11);
}

TEST_F(CPrintTest, PrintKelFileTriesTextModeOnceMoreWithNewFiles) {
  CPrint print;
  ASSERT_EQ(Prepare(print), 0);
  port->on_send = [&] {
    if (port->jobs.size() == 1) throw Error(error_number::kPrinterError, "busy");
    EXPECT_TRUE(fs::exists(TempFolder() / "_kelPRT1.bat"));
  };
  print.PrintReport();
  EXPECT_TRUE(testing::Contains(*print.LastError(), "busy")) << "only PrintKelFile tries again";
  port->jobs.clear();
  print.CopyPageRange(2, 2);
  port->on_send = [&] {
    if (port->jobs.size() > 1) return;
    fs::remove(TempFolder() / "_kelPRT1.bat");
    throw Error(error_number::kPrinterError, "busy");
  };
  print.PrintKelFile();
  EXPECT_FALSE(print.LastError());
  EXPECT_EQ(Printed(), (Strings{"_kelFile.rpt", "_kelFile.rpt"})) << "the whole report";
  EXPECT_TRUE(fs::exists(TempFolder() / "_kelPRT1.bat"));
  port->on_send = [] { throw Error(error_number::kPrinterError, "gone"); };
  print.PrintKelFile();
  EXPECT_TRUE(testing::Contains(*print.LastError(), "gone"));
}

TEST_F(CPrintTest, FileToPrinterTellsWhetherTheWholeFileWasSent) {
  CPrint print;
  const fs::path file = TempFolder() / "note.txt";
  testing::WriteFile(file, "a\r\n\x0c\r\nb\r\n");
  EXPECT_TRUE(print.FileToPrinter(file.string()));
  EXPECT_EQ(printer->begun[0].title, "note.txt");
  EXPECT_EQ(printer->sheets.size(), 2U);
  EXPECT_FALSE(print.FileToPrinter(file.string() + "x"));
  EXPECT_EQ(print.LastError()->Number(), error_number::kFileNotFound);
  fs::create_symlink(file, TempFolder() / "link.txt");
  EXPECT_TRUE(print.FileToPrinter((TempFolder() / "link.txt").string()));
  int steps = 0;
  desktop->on_call = [&](std::string_view call) {
    if (call.substr(0, 4) == "step") desktop->answer = ++steps < 2;  // then Stop is pressed
  };
  EXPECT_FALSE(print.FileToPrinter(file.string()));
  EXPECT_FALSE(print.LastError() || printer->ended);
  print.ShowSetup();
  EXPECT_EQ(windows->setups, 1);
}

TEST_F(CPrintTest, APreviewsPrintJobKeepsToTheReportOnShow) {
  CPrint print;
  Prepare(print);
  print.Mode("WINDOWS");
  ReportSnapshot shown = print.Snapshot();
  const std::string pages = ReadFile(shown.page_file);
  shown.page_file = TempFolder() / "shown.rpt";
  testing::WriteFile(shown.page_file, pages);
  Prepare(print, 0, Value::Array{5, 20}, 3);  // a later report

  CPrint job(shown);
  windows->answer = PageRange{2, 2};
  MemoryGrid none("");
  job.PreparePrint(none);
  ASSERT_FALSE(job.LastError());
  EXPECT_EQ(windows->asked_pages, shown.job.page_count);
  ASSERT_EQ(printer->begun.size(), 1U) << "in the mode of the report on show";
  const std::vector<std::uint64_t>& offsets = *shown.job.page_offsets;
  EXPECT_EQ(ReadFile(job.PageRangeFile()), pages.substr(offsets[1], offsets[2] - offsets[1]));
}

TEST_F(CPrintTest, APlantedLinkIsReplacedAndAFolderInTheFilesPlaceIsAnError) {
  CPrint print;
  const testing::TestFolder folder;
  testing::WriteFile(folder / "victim", "precious");
  fs::remove(print.GetKelFile());
  fs::create_symlink(folder / "victim", print.GetKelFile());
  EXPECT_EQ(Prepare(print), 0);
  EXPECT_EQ(ReadFile(folder / "victim"), "precious");
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(print.GetKelFile())));

  fs::remove(print.GetKelFile());
  fs::create_directory(print.GetKelFile());
  EXPECT_NE(Prepare(print), 0);
  fs::remove(print.GetKelFile());
  EXPECT_EQ(Prepare(print), 0);
}

TEST_F(CPrintTest, ThreadsHaveFilesAndJobValuesOfTheirOwn) {
  CPrint print;
  Prepare(print);
  const std::string mine = ReadFile(print.GetKelFile());
  std::string other_file;
  std::thread([&] {
    CPrint other;
    EXPECT_EQ(Prepare(other, 900), 0);
    EXPECT_EQ(CurrentJob().first_page, 900);
    other_file = other.GetKelFile();
  }).join();
  EXPECT_NE(other_file, print.GetKelFile());
  EXPECT_EQ(ReadFile(print.GetKelFile()), mine);
  EXPECT_EQ(CurrentJob().first_page, 1);
}

}  // namespace
}  // namespace kel
