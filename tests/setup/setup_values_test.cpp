#include "setup/setup_values.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "common/error.h"
#include "common/temp_folder.h"
#include "engine/print_files.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::ReadFile;
using namespace std::string_literals;

constexpr CellSize kCell = {144, 240};  // 71 lines on 12 inches

// A store of which one write fails, after as many others as are given.
class FailingStore : public MemorySettingsStore {
 public:
  void Write(std::string_view section, std::string_view key, std::string_view text) override {
    if (writes_before_failure-- == 0) throw Error(error_number::kDiskFull, "disk full");
    MemorySettingsStore::Write(section, key, text);
  }
  int writes_before_failure = -1;  // never
};

SettingsStore::Entries Everything(SettingsStore& store) {
  SettingsStore::Entries all;
  for (const std::string& section : store.Sections()) {
    for (auto& [key, text] : store.ReadSection(section)) all.emplace_back(section + key, text);
  }
  return all;
}

TEST(SetupValuesTest, TheFirstFaultIsToldWithItsField) {
  const std::string too_small =
      "Each value must be greater than or equal to zero. Minimum Top Margin and Bottom Margin "
      "is 1.";
  const std::string too_many = "Total lines per page should not exceed 71.";
  struct Case {
    PageField field;
    const char* typed;
    std::string message;  // empty: no fault
  };
  MemorySettingsStore store;
  for (const Case& typed : {Case{PageField::kTop, "0", too_small},
                            {PageField::kBottom, "", too_small},
                            {PageField::kLeft, "-1", too_small},
                            {PageField::kHeight, "-0.2", too_small},
                            {PageField::kLines, "-1", too_small},
                            {PageField::kLines, "65", ""},
                            {PageField::kLines, "65.5", too_many},
                            {PageField::kLines, "66", too_many},
                            {PageField::kHeight, "", ""},
                            {PageField::kWidth, "0", ""},
                            {PageField::kWidth, "256", "This value should not exceed 255."},
                            {PageField::kLeft, "32768", "This value should not exceed 32767."}}) {
    SetupValues values = LoadSetup(store);
    values.Page()[typed.field] = typed.typed;
    const auto fault = FindFault(values, kCell);
    EXPECT_EQ(fault ? fault->message : "", typed.message) << typed.typed;
    EXPECT_EQ(fault ? fault->field : typed.field, typed.field) << typed.typed;
    values.character_set = " ";
    EXPECT_EQ(FindFault(values, kCell)->message, "You must enter a font set.");
    EXPECT_EQ(FindFault(values, kCell)->field, std::nullopt);
  }
}

TEST(SetupValuesTest, WhatIsSavedIsLoadedAgainAndThePrintFilesFollow) {
  MemorySettingsStore store;
  store.Write("Characters", "17 cpi", "15");
  store.Write("Setup\\DOS", "TopMargin", "five");
  store.Write("Setup\\Windows", "Portrait", "upright");
  store.Write("Setup\\Windows", "TopMargin", "five");
  SetupValues values = LoadSetup(store);
  EXPECT_EQ(values.Page()[PageField::kTop], "5") << "a misfit counts as absent";
  EXPECT_EQ(values.Page()[PageField::kWidth], "8.5");
  values.port = "queue:office";
  values.character_set = "17 cpi";
  values.code_page = "CP437";
  values.print_date_time = false;
  values.Page()[PageField::kHeight] = " 11.7in";
  values.Page()[PageField::kLeft] = "3.5";
  SaveSetup(store, values, kCell);
  EXPECT_EQ(store.ReadSection("Setup\\Windows").size(), 2U) << "left alone, what is read apart";
  EXPECT_EQ(store.Read("Setup\\Windows", "Portrait"), "True");
  EXPECT_EQ(store.Read("Setup\\DOS", "Cols"), "80");
  EXPECT_EQ(store.Read("Setup\\DOS", "CodePage"), "CP437");
  EXPECT_EQ(store.Read("Setup", "DateTime"), "False");
  EXPECT_EQ(store.Read("Setup\\DOS", "PageHeight"), "11.7");
  EXPECT_EQ(LoadSetup(store).Page()[PageField::kLeft], "4");
  EXPECT_EQ(ReadFile(TempFolder() / kSetUpFileName), "\033C\0\014\033\017"s);
  EXPECT_NE(ReadFile(TempFolder() / kRangeBatchName).find("> \"queue:office\""), std::string::npos);

  values.text_mode = false;
  values.portrait = false;
  values.font = {"Mono", 9.5, {true, false, true, false}, -2147483640};
  SaveSetup(store, values, kCell);
  PrintSettings settings;
  EXPECT_FALSE(LoadPrintSettings(store, settings));
  EXPECT_EQ(settings.mode + settings.font, "WINDOWSMono");
  EXPECT_EQ(settings.font_size, 9.5F);
  EXPECT_EQ(settings.fore_color, -2147483640);
  EXPECT_TRUE(settings.font_flags.bold && settings.font_flags.underline);
  EXPECT_EQ(settings.lines, 65);
  EXPECT_EQ(settings.cols, 115) << "of the turned sheet";
  PutDefaults(values);
  EXPECT_EQ(values.font.fore_color, 0);
}

TEST(SetupValuesTest, AStoredSizeThatNoFontHasGivesTheUsualOne) {
  MemorySettingsStore store;
  for (const auto& [stored, points] :
       {std::pair("0", 10.), {"-8", 10.}, {"1000.5", 10.}, {"0.5", 0.5}, {"1000", 1000.}}) {
    store.Write("Setup\\Windows", "FontSize", stored);
    EXPECT_EQ(LoadSetup(store).font.points, points) << stored;
  }
}

TEST(SetupValuesTest, AFailureAtAnyPointLeavesTheSettingsFromBefore) {
  FailingStore store;
  SetupValues values = LoadSetup(store);
  store.Write("Setup", "Printer", "Office");
  const SettingsStore::Entries before = Everything(store);
  constexpr int kWrites = 15;
  for (int done = 0; done < kWrites; ++done) {
    FailingStore failing = store;
    failing.writes_before_failure = done;
    EXPECT_THROW(SaveSetup(failing, values, kCell), Error) << done;
    EXPECT_EQ(Everything(failing), before) << done;
  }
  const std::filesystem::path in_the_way = TempFolder() / kWholeBatchName;
  std::filesystem::remove(in_the_way);
  std::filesystem::create_directories(in_the_way / "folder");
  EXPECT_THROW(SaveSetup(store, values, kCell), Error);
  EXPECT_EQ(Everything(store), before);
  std::filesystem::remove_all(in_the_way);
  SaveSetup(store, values, kCell);
  EXPECT_NE(Everything(store), before);
}

}  // namespace
}  // namespace kel
