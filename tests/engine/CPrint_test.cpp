#include "engine/CPrint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "common/host.h"
#include "common/temp_folder.h"
#include "engine/memory_grid.h"
#include "engine/print_settings.h"
#include "support/fixed_clock.h"
#include "support/recording_desktop.h"
#include "support/test_folder.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

class CPrintTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CurrentHost() = {store, std::make_shared<testing::FixedClock>(), desktop};
    CurrentJob() = {};
    for (int i = 0; i < 40; ++i) grid.AddRow({i == 0 ? "No" : std::to_string(i), "x"});
  }

  void Prepare(CPrint& print, PageNumber start = 0) {
    print.ColWidth(Value::Array{5, 20});
    print.Lines(12);
    print.PrepareReport(grid, 0, 0, 39, 1, start);
  }

  std::shared_ptr<MemorySettingsStore> store = std::make_shared<MemorySettingsStore>();
  std::shared_ptr<testing::RecordingDesktop> desktop =
      std::make_shared<testing::RecordingDesktop>();
  MemoryGrid grid{"Day Book"};
};

TEST_F(CPrintTest, AFreshUserGetsThePublishedDefaults) {
  const CPrint print;
  EXPECT_FALSE(print.LastError());
  EXPECT_EQ(print.Pages(), 0);
  EXPECT_EQ(print.CurrentPage(), 1);
  EXPECT_EQ(print.ColWidth(), Value(""));
  EXPECT_EQ(print.ReportTitle(), Value(""));
  EXPECT_EQ(print.PageTitle(), Value(""));
  EXPECT_TRUE(print.ReBuild());
  EXPECT_EQ(print.Mode(), "DOS");
  EXPECT_EQ(print.PrinterDevice(), "Epson LX-800");
  EXPECT_EQ(print.Port(), "LPT1:");
  EXPECT_TRUE(print.PrintDateTime());
  EXPECT_FALSE(print.PrintColumnDivider());
  EXPECT_EQ(print.Font(), "10 cpi");
  EXPECT_EQ(print.TopMargin(), 5);
  EXPECT_EQ(print.BottomMargin(), 1);
  EXPECT_EQ(print.LeftMargin(), 0);
  EXPECT_EQ(print.RightMargin(), 0);
  EXPECT_EQ(print.PageHeight(), 12.0F);
  EXPECT_EQ(print.PageWidth(), 8.5F);
  EXPECT_EQ(print.Lines(), 60);
  EXPECT_EQ(print.Cols(), 80);
  EXPECT_TRUE(print.Portrait());
  EXPECT_EQ(print.StartPage(), 1);
  EXPECT_EQ(print.EndPage(), 10000);
  EXPECT_EQ(print.UnderLineChar(), "-");
}

TEST_F(CPrintTest, RefreshReadsTheSectionOfTheStoredMode) {
  store->Write("Setup\\DOS", "Lines", "33");
  store->Write("Setup\\Windows", "Portrait", "False");
  CPrint print;
  EXPECT_EQ(print.Lines(), 33);
  EXPECT_FALSE(print.Portrait());

  store->Write("Setup", "Mode", "WINDOWS");
  store->Write("Setup\\Windows", "LeftMargin", "4");
  store->Write("Setup\\Windows", "PageWidth", "14.5");
  print.EndPage(3);
  print.Lines(7);
  EXPECT_EQ(print.Lines(), 7);
  print.Refresh();
  EXPECT_EQ(print.Mode(), "WINDOWS");
  EXPECT_EQ(print.Lines(), 65);
  EXPECT_EQ(print.Cols(), 96);
  EXPECT_EQ(print.LeftMargin(), 4);
  EXPECT_EQ(print.PageWidth(), 14.5F);
  EXPECT_EQ(print.Font(), "Courier New");
  EXPECT_EQ(print.FontSize(), 10.0F);
  EXPECT_EQ(print.EndPage(), 3) << "EndPage is not stored";
  EXPECT_FALSE(store->Read("Setup\\DOS", "EndPage").has_value());
}

TEST_F(CPrintTest, AStoredTextOfTheWrongTypeLeavesItsDefaultAndIsTold) {
  for (const char* text : {"sixty", "", "99999", "6.5", "0x40"}) {
    store->Write("Setup\\DOS", "Lines", text);
    const CPrint print;
    ASSERT_TRUE(print.LastError()) << text;
    EXPECT_EQ(print.LastError()->Number(), error_number::kTypeMismatch);
    EXPECT_NE(print.LastError()->Description().find("Setup\\DOS/Lines"), std::string::npos);
    EXPECT_EQ(print.Lines(), 60);
    EXPECT_EQ(print.Cols(), 80) << "what comes after it is loaded";
  }
}

TEST_F(CPrintTest, PreparingStoresTheJobValues) {
  CPrint print;
  print.LeftMargin(3);
  print.RightMargin(4);
  Prepare(print, 5);
  ASSERT_FALSE(print.LastError());
  const JobValues& job = CurrentJob();
  EXPECT_EQ(job.first_page, 5);
  EXPECT_EQ(job.page_width, 26 + 3 + 4);
  EXPECT_EQ(job.page_length, 5 + 12 + 1);
  EXPECT_EQ(job.page_count, print.Pages());
  EXPECT_EQ(print.CurrentPage(), print.Pages() + 4);
  EXPECT_FALSE(print.ReBuild());
  const std::string text = testing::ReadFile(print.GetKelFile());
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
  const std::string before = testing::ReadFile(print.GetKelFile());
  const JobValues job = CurrentJob();

  print.ReBuild(true);
  print.PrepareReport(grid, 0, 0, 99, 1, 0);  // the grid ends with row 39
  ASSERT_TRUE(print.LastError());
  EXPECT_EQ(print.LastError()->Number(), error_number::kSubscriptOutOfRange);
  EXPECT_EQ(testing::ReadFile(print.GetKelFile()), before);
  EXPECT_TRUE(print.ReBuild());
  EXPECT_EQ(CurrentJob().page_count, job.page_count);
  EXPECT_EQ(std::count(desktop->calls.begin(), desktop->calls.end(), "unload"), 2);
  EXPECT_EQ(desktop->messages.at(0).prompt.rfind("9 : Subscript out of range", 0), 0U);
  EXPECT_NE(testing::ReadFile(TempFolder() / "Error.log").find("[DLL.PrepareReport],9 : "),
            std::string::npos);

  print.PrepareReport(grid, 0, 0, 39, 1, 0);
  EXPECT_FALSE(print.LastError()) << "the next operation starts afresh";
}

TEST_F(CPrintTest, WidthsThatAreNoNumbersAreATypeMismatch) {
  CPrint print;
  print.PrepareReport(grid, 0, 0, 39, 1, 0);
  EXPECT_EQ(print.LastError()->Number(), error_number::kTypeMismatch);
  print.ColWidth(Value::Array{"wide", 3});
  print.PrepareReport(grid, 0, 0, 39, 1, 0);
  EXPECT_EQ(print.LastError()->Number(), error_number::kTypeMismatch);
  print.ColWidth(Value::Array{"5", 20.0});
  print.PrepareReport(grid, 0, 0, 39, 1, 0);
  EXPECT_FALSE(print.LastError());
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
  const std::string all = testing::ReadFile(print.GetKelFile());
  const std::vector<std::uint64_t>& offsets = *CurrentJob().page_offsets;
  EXPECT_EQ(testing::ReadFile(print.PageRangeFile()),
            all.substr(offsets[1], offsets[3] - offsets[1]));
}

TEST_F(CPrintTest, ALinkPlantedAtTheWorkFileIsReplacedAndNotFollowed) {
  CPrint print;
  const testing::TestFolder folder;
  testing::WriteFile(folder / "victim", "precious");
  std::filesystem::remove(print.GetKelFile());
  std::filesystem::create_symlink(folder / "victim", print.GetKelFile());
  Prepare(print);
  EXPECT_FALSE(print.LastError());
  EXPECT_EQ(testing::ReadFile(folder / "victim"), "precious");
  EXPECT_TRUE(
      std::filesystem::is_regular_file(std::filesystem::symlink_status(print.GetKelFile())));
}

TEST_F(CPrintTest, AFolderInPlaceOfTheWorkFileIsAnErrorAndNothingElse) {
  CPrint print;
  std::filesystem::remove(print.GetKelFile());
  std::filesystem::create_directory(print.GetKelFile());
  Prepare(print);
  EXPECT_TRUE(print.LastError());
  std::filesystem::remove(print.GetKelFile());
  Prepare(print);
  EXPECT_FALSE(print.LastError());
}

TEST_F(CPrintTest, ThreadsHaveFilesAndJobValuesOfTheirOwn) {
  CPrint print;
  Prepare(print);
  const std::string mine = testing::ReadFile(print.GetKelFile());
  std::string other_file;
  std::thread([&] {
    CPrint other;
    Prepare(other, 900);
    EXPECT_FALSE(other.LastError());
    EXPECT_EQ(CurrentJob().first_page, 900);
    other_file = other.GetKelFile();
  }).join();
  EXPECT_NE(other_file, print.GetKelFile());
  EXPECT_EQ(testing::ReadFile(print.GetKelFile()), mine);
  EXPECT_EQ(CurrentJob().first_page, 1);
}

TEST_F(CPrintTest, PublishedSettingsAreFoundByNameAndCheckedByType) {
  ASSERT_NE(FindStoredSetting("Setup\\DOS", "Lines"), nullptr);
  EXPECT_EQ(FindStoredSetting("Setup\\DOS", "FontBold"), nullptr);
  EXPECT_EQ(FindStoredSetting("Characters", "10 cpi"), nullptr);
  for (const StoredSetting& setting : StoredPrintSettings()) {
    EXPECT_TRUE(FitsType(setting.fallback, setting.type)) << setting.key;
  }
  EXPECT_TRUE(FitsType("TRUE", SettingType::kFlag));
  EXPECT_FALSE(FitsType("yes", SettingType::kFlag));
  EXPECT_TRUE(FitsType(" 32767 ", SettingType::kInteger));
  EXPECT_FALSE(FitsType("32768", SettingType::kInteger));
  EXPECT_TRUE(FitsType("16777215", SettingType::kLong));
  EXPECT_FALSE(FitsType("1e40", SettingType::kNumber));
  EXPECT_FALSE(FitsType("inf", SettingType::kNumber));
  EXPECT_FALSE(FitsType("8.5in", SettingType::kNumber));
}

}  // namespace
}  // namespace kel
