#include "engine/CPrint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "common/host.h"
#include "common/temp_folder.h"
#include "engine/memory_grid.h"
#include "engine/print_settings.h"
#include "support/errors.h"
#include "support/fixed_clock.h"
#include "support/recording_desktop.h"
#include "support/test_folder.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

namespace fs = std::filesystem;
using testing::ReadFile;
using Strings = std::vector<std::string>;

class CPrintTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CurrentHost() = {store, std::make_shared<testing::FixedClock>(), desktop};
    CurrentJob() = {};
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
