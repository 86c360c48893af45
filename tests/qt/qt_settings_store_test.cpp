#include "platform/qt/qt_settings_store.h"

#include <gtest/gtest.h>

#include <QSettings>
#include <cstdlib>
#include <string>
#include <vector>

#include "common/host.h"
#include "platform/qt/qt_host.h"
#include "support/child_process.h"
#include "support/errors.h"
#include "support/file_size_limit.h"
#include "support/test_folder.h"

namespace kel {
namespace {

namespace fs = std::filesystem;
using testing::ErrorOf;

class QtSettingsStoreTest : public ::testing::Test {
 protected:
  const testing::TestFolder folder_;
  const fs::path file_ = folder_ / "config/KELDLL.ini";
  QtSettingsStore store_{file_};
};

TEST_F(QtSettingsStoreTest, ASectionListsOnlyWhatStandsDirectlyInIt) {
  store_.Delete("Setup", "DOS");
  EXPECT_FALSE(fs::exists(file_.parent_path())) << "made without a need";
  store_.Write("Setup\\DOS", "Lines", "60");
  store_.Write("Setup", "DOS", "a key");
  store_.Write("Setup2", "Mode", "x");
  EXPECT_EQ(store_.ReadSection("Setup"), (SettingsStore::Entries{{"DOS", "a key"}}));
  EXPECT_EQ(store_.ReadSection("Setup\\DOS"), (SettingsStore::Entries{{"Lines", "60"}}));
  store_.Delete("Setup", "DOS");
  EXPECT_EQ(store_.Sections(), (std::vector<std::string>{"Setup2", "Setup\\DOS"}));
}

TEST_F(QtSettingsStoreTest, AQtProgramReadsTheUsersSettings) {
  InstallQtHost();
  CurrentHost().settings->Write("Setup\\DOS", "Printer", "Epson, \u20b9 \"LX\"");
  const QSettings settings(QString(::getenv("XDG_CONFIG_HOME")) + "/KELDLL/KELDLL.ini",
                           QSettings::IniFormat);
  EXPECT_EQ(settings.value("Setup/DOS/Printer").toString(),
            QStringLiteral(u"Epson, \u20b9 \"LX\""));
}

TEST_F(QtSettingsStoreTest, EveryChangeOfAnotherProgramIsSeen) {
  QtSettingsStore other(file_);
  const auto moment = fs::file_time_type::clock::now();
  for (const char* lines : {"60", "61"}) {
    other.Write("Setup", "Lines", lines);
    fs::last_write_time(file_, moment);  // as on a file system of coarse times
    EXPECT_EQ(store_.Read("Setup", "Lines"), lines);
  }
  fs::last_write_time(file_, moment - std::chrono::hours(1));
  EXPECT_EQ(store_.Read("Setup", "Lines"), "61");
  other.Write("Setup", "Lines", "72");
  EXPECT_EQ(store_.Read("Setup", "Lines"), "72");
  fs::remove(file_);
  EXPECT_EQ(store_.Read("Setup", "Lines"), std::nullopt);
}

TEST_F(QtSettingsStoreTest, TwoProcessesWritingAtOnceLoseNothing) {
  const auto write_all = [this](const std::string& section) {
    QtSettingsStore store(file_);
    for (int key = 0; key < 20; ++key) store.Write(section, std::to_string(key), "x");
    return store.ReadSection(section).size() == 20;
  };
  const pid_t first = testing::StartChild([&] { return write_all("First"); });
  const pid_t second = testing::StartChild([&] { return write_all("Second"); });
  EXPECT_TRUE(testing::Succeeded(first));
  EXPECT_TRUE(testing::Succeeded(second));
  EXPECT_EQ(store_.ReadSection("First").size(), 20U);
  EXPECT_EQ(store_.ReadSection("Second").size(), 20U);
}

TEST_F(QtSettingsStoreTest, AFullDiskLeavesTheEarlierSettingsWhole) {
  store_.Write("Setup", "Mode", "DOS");
  const std::string before = testing::ReadFile(file_);
  {
    const testing::FileSizeLimit full(before.size() + 100);
    EXPECT_THROW(store_.Write("Setup", "Printer", std::string(10'000, 'x')), Error);
    EXPECT_EQ(store_.Read("Setup", "Printer"), std::nullopt);
  }
  EXPECT_EQ(testing::ReadFile(file_), before);
}

TEST_F(QtSettingsStoreTest, WhatHoldsNoSettingsIsAnErrorEachTimeAndIsNotOverwritten) {
  const auto expect_error = [this](int number) {
    for (const Error& error :
         {ErrorOf([&] { store_.Read("Setup", "Mode"); }), ErrorOf([&] { store_.Sections(); }),
          ErrorOf([&] { store_.Write("Setup", "Mode", "DOS"); })}) {
      EXPECT_EQ(error.Number(), number);
      EXPECT_TRUE(testing::Contains(error, file_.string()));
    }
  };
  testing::WriteFile(folder_ / "config", "a file");
  expect_error(error_number::kPathNotFound);
  fs::remove(folder_ / "config");
  fs::create_directories(file_);
  expect_error(error_number::kPermissionDenied);
  fs::remove(file_);
  testing::WriteFile(file_, "%PDF-1.4\n1 0 obj\n");
  expect_error(error_number::kInvalidFileFormat);
  EXPECT_EQ(testing::ReadFile(file_), "%PDF-1.4\n1 0 obj\n");
  store_.Clear();
  EXPECT_TRUE(store_.Sections().empty()) << "a damaged store can be begun afresh";
}

}  // namespace
}  // namespace kel
