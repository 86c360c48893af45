#include "platform/qt/qt_settings_store.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QLockFile>
#include <QSettings>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "common/child_process.h"
#include "common/error.h"
#include "common/host.h"
#include "platform/qt/qt_host.h"
#include "support/test_folder.h"
#include "toolkit/file_size_limit.h"

namespace kel {
namespace {

using testing::FileSizeLimit;
using testing::ReadFile;
using testing::TestFolder;
using testing::WriteFile;

using Entries = SettingsStore::Entries;
using Names = std::vector<std::string>;

class QtSettingsStoreTest : public ::testing::Test {
 protected:
  template <typename Action>
  int ErrorOf(Action action) const {
    try {
      action();
    } catch (const Error& failure) {
      EXPECT_NE(failure.Description().find(file_.string()), std::string::npos)
          << failure.Description();
      return failure.Number();
    }
    return 0;
  }

  TestFolder folder_;
  const std::filesystem::path file_ = folder_ / "config/KELDLL.ini";
  QtSettingsStore store_{file_};
};

TEST_F(QtSettingsStoreTest, AStoreWithoutAFileIsEmptyAndMakesNone) {
  EXPECT_EQ(store_.Read("Setup", "Mode"), std::nullopt);
  EXPECT_EQ(store_.Read("Setup", "Mode", "DOS"), "DOS");
  EXPECT_TRUE(store_.ReadSection("Setup").empty());
  EXPECT_TRUE(store_.Sections().empty());
  store_.Delete("Setup", "Mode");
  EXPECT_FALSE(std::filesystem::exists(file_.parent_path()));
}

TEST_F(QtSettingsStoreTest, WhatIsWrittenIsThereForTheNextProcess) {
  const pid_t child = StartChild([this] {
    QtSettingsStore(file_).Write("Setup\\DOS", "TopMargin", "7");
    return true;
  });
  ASSERT_TRUE(Succeeded(child));
  EXPECT_EQ(store_.Read("Setup\\DOS", "TopMargin"), "7");
}

TEST_F(QtSettingsStoreTest, ASectionListsOnlyWhatStandsDirectlyInIt) {
  store_.Write("Setup\\DOS", "TopMargin", "5");
  store_.Write("Setup\\DOS", "Lines", "60");
  store_.Write("Setup", "Mode", "DOS");
  store_.Write("Setup2", "Mode", "x");
  store_.Write("Characters", "12 cpi", "27 77");
  EXPECT_EQ(store_.ReadSection("Setup"), (Entries{{"Mode", "DOS"}}));
  EXPECT_EQ(store_.ReadSection("Setup\\DOS"), (Entries{{"Lines", "60"}, {"TopMargin", "5"}}));
  EXPECT_EQ(store_.Sections(), (Names{"Characters", "Setup", "Setup2", "Setup\\DOS"}));
}

TEST_F(QtSettingsStoreTest, DeletingAKeyLeavesTheSectionOfItsName) {
  store_.Write("Setup", "DOS", "a key");
  store_.Write("Setup\\DOS", "Lines", "60");
  store_.Delete("Setup", "DOS");
  EXPECT_EQ(store_.Read("Setup", "DOS"), std::nullopt);
  EXPECT_EQ(store_.Read("Setup\\DOS", "Lines"), "60");
  store_.Delete("Setup\\DOS", "Lines");
  EXPECT_TRUE(store_.Sections().empty());
}

TEST_F(QtSettingsStoreTest, AQtProgramReadsTheSameSettings) {
  store_.Write("Setup\\DOS", "TopMargin", "7");
  store_.Write("Setup", "Printer", "Epson, \u20b9 \"LX\"");
  const QSettings settings(QFile::decodeName(file_.c_str()), QSettings::IniFormat);
  EXPECT_EQ(settings.value("Setup/DOS/TopMargin").toInt(), 7);
  EXPECT_EQ(settings.value("Setup/Printer").toString(), QStringLiteral(u"Epson, \u20b9 \"LX\""));
}

TEST_F(QtSettingsStoreTest, AChangeOfTheSameSizeInTheSameMomentIsSeen) {
  QtSettingsStore reader(file_);
  const auto moment = std::filesystem::file_time_type::clock::now();
  for (const char* lines : {"60", "61", "62"}) {
    store_.Write("Setup", "Lines", lines);
    std::filesystem::last_write_time(file_, moment);  // as on a file system of coarse times
    EXPECT_EQ(reader.Read("Setup", "Lines"), lines);
  }
}

TEST_F(QtSettingsStoreTest, AFileLeftAloneForLongIsStillReadAfterItChanged) {
  store_.Write("Setup", "Lines", "60");
  const auto age = [this] {
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(file_, now - std::chrono::hours(1));
  };
  age();
  EXPECT_EQ(store_.Read("Setup", "Lines"), "60");
  QtSettingsStore(file_).Write("Setup", "Lines", "72");
  EXPECT_EQ(store_.Read("Setup", "Lines"), "72");
  std::filesystem::remove(file_);
  EXPECT_EQ(store_.Read("Setup", "Lines"), std::nullopt);
}

TEST_F(QtSettingsStoreTest, TwoProcessesWritingAtOnceLoseNothing) {
  constexpr int kKeys = 3;
  constexpr int kRounds = 10;
  const auto write_all = [this](const std::string& section) {
    QtSettingsStore store(file_);
    for (int round = 0; round < kRounds; ++round) {
      for (int key = 0; key < kKeys; ++key) {
        store.Write(section, std::to_string(key), std::to_string(100 + round));
        if (store.Read(section, std::to_string(key)) != std::to_string(100 + round)) return false;
      }
    }
    return true;
  };
  const pid_t first = StartChild([&] { return write_all("First"); });
  const pid_t second = StartChild([&] { return write_all("Second"); });
  EXPECT_TRUE(Succeeded(first));
  EXPECT_TRUE(Succeeded(second));
  for (const char* section : {"First", "Second"}) {
    const Entries entries = store_.ReadSection(section);
    EXPECT_EQ(entries.size(), static_cast<std::size_t>(kKeys));
    for (const auto& [key, text] : entries) EXPECT_EQ(text, std::to_string(100 + kRounds - 1));
  }
}

TEST_F(QtSettingsStoreTest, ThreadsMayShareAStore) {
  const auto write_all = [this](const std::string& section) {
    for (int key = 0; key < 8; ++key) store_.Write(section, std::to_string(key), "x");
  };
  std::thread other(write_all, "Other");
  write_all("Mine");
  other.join();
  EXPECT_EQ(store_.ReadSection("Mine").size(), 8U);
  EXPECT_EQ(store_.ReadSection("Other").size(), 8U);
}

TEST_F(QtSettingsStoreTest, TheLockOfAKilledProcessHoldsNobodyUp) {
  store_.Write("Setup", "Mode", "DOS");
  const pid_t child = StartChild([this] {
    auto* lock = new QLockFile(QFile::decodeName((file_.string() + ".lock").c_str()));
    return lock->lock();
  });
  ASSERT_TRUE(Succeeded(child));
  ASSERT_TRUE(std::filesystem::exists(file_.string() + ".lock"));
  store_.Write("Setup", "Mode", "WINDOWS");
  EXPECT_EQ(store_.Read("Setup", "Mode"), "WINDOWS");
}

TEST_F(QtSettingsStoreTest, AFullDiskLeavesTheEarlierSettingsWhole) {
  store_.Write("Setup", "Mode", "DOS");
  const std::string before = ReadFile(file_);
  {
    const FileSizeLimit full(before.size() + 100);
    EXPECT_THROW(store_.Write("Setup", "Printer", std::string(10'000, 'x')), Error);
    EXPECT_EQ(store_.Read("Setup", "Mode"), "DOS");
    EXPECT_EQ(store_.Read("Setup", "Printer"), std::nullopt);
  }
  EXPECT_EQ(ReadFile(file_), before);
  store_.Write("Setup", "Port", "LPT1:");
  EXPECT_EQ(store_.ReadSection("Setup"), (Entries{{"Mode", "DOS"}, {"Port", "LPT1:"}}));
}

TEST_F(QtSettingsStoreTest, AFileOfSomethingElseIsAnErrorEachTimeAndIsNotOverwritten) {
  std::filesystem::create_directory(file_.parent_path());
  WriteFile(file_, "%PDF-1.4\n1 0 obj\n");
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(ErrorOf([&] { store_.Read("Setup", "Mode"); }), error_number::kInvalidFileFormat);
    EXPECT_EQ(ErrorOf([&] { store_.Sections(); }), error_number::kInvalidFileFormat);
    EXPECT_EQ(ErrorOf([&] { store_.Write("Setup", "Mode", "DOS"); }),
              error_number::kInvalidFileFormat);
  }
  EXPECT_EQ(ReadFile(file_), "%PDF-1.4\n1 0 obj\n");
}

TEST_F(QtSettingsStoreTest, AFolderInPlaceOfTheFileIsAnError) {
  std::filesystem::create_directories(file_);
  EXPECT_EQ(ErrorOf([&] { store_.Read("Setup", "Mode"); }), error_number::kPermissionDenied);
  EXPECT_EQ(ErrorOf([&] { store_.Write("Setup", "Mode", "DOS"); }),
            error_number::kPermissionDenied);
}

TEST_F(QtSettingsStoreTest, AFolderThatCannotBeMadeIsAnError) {
  WriteFile(folder_ / "config", "a file");
  EXPECT_EQ(ErrorOf([&] { store_.Read("Setup", "Mode"); }), error_number::kPathNotFound);
  EXPECT_EQ(ErrorOf([&] { store_.Write("Setup", "Mode", "DOS"); }), error_number::kPathNotFound);
}

TEST_F(QtSettingsStoreTest, ALinkToTheSettingsStaysALink) {
  std::filesystem::create_directory(file_.parent_path());
  WriteFile(folder_ / "dotfile.ini", "[Setup]\nMode=DOS\n");
  std::filesystem::create_symlink(folder_ / "dotfile.ini", file_);
  store_.Write("Setup", "Mode", "WINDOWS");
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
  EXPECT_EQ(QtSettingsStore(folder_ / "dotfile.ini").Read("Setup", "Mode"), "WINDOWS");
}

TEST_F(QtSettingsStoreTest, TheHostKeepsTheUsersSettingsInTheConfigurationFolder) {
  const pid_t child = StartChild([this] {
    ::setenv("XDG_CONFIG_HOME", folder_.Path().c_str(), 1);
    InstallQtHost();
    CurrentHost().settings->Write("Setup", "Mode", "WINDOWS");
    return true;
  });
  ASSERT_TRUE(Succeeded(child));
  EXPECT_EQ(QtSettingsStore(folder_ / "KELDLL/KELDLL.ini").Read("Setup", "Mode"), "WINDOWS");
}

}  // namespace
}  // namespace kel
