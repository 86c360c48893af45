#include "common/settings_store.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kel {
namespace {

using Entries = SettingsStore::Entries;
using Names = std::vector<std::string>;

TEST(MemorySettingsStore, GivesBackWhatWasWritten) {
  MemorySettingsStore store;
  store.Write("Setup\\DOS", "Lines", "60");
  store.Write("Setup\\DOS", "Lines", "66");
  EXPECT_EQ(store.Read("Setup\\DOS", "Lines"), "66");
  EXPECT_EQ(store.Read("Setup", "Lines"), std::nullopt);
  EXPECT_EQ(store.Read("Setup", "Lines", "72"), "72");
  store.Delete("Setup\\DOS", "Lines");
  store.Delete("Setup\\DOS", "Lines");
  EXPECT_EQ(store.Read("Setup\\DOS", "Lines"), std::nullopt);
}

TEST(MemorySettingsStore, ASectionHoldsOnlyItsOwnEntriesInOrder) {
  MemorySettingsStore store;
  store.Write("Setup", "Mode", "DOS");
  store.Write("Setup", "", "nameless");
  store.Write("Setup\\DOS", "Lines", "66");
  store.Write("Setup", "Copies", "1");
  EXPECT_EQ(store.ReadSection("Setup"),
            (Entries{{"", "nameless"}, {"Copies", "1"}, {"Mode", "DOS"}}));
  EXPECT_EQ(store.ReadSection("Set"), Entries());
  EXPECT_EQ(store.Sections(), (Names{"Setup", "Setup\\DOS"}));
}

class SettingsOverlayTest : public testing::Test {
 protected:
  SettingsOverlayTest() {
    stored_.Write("Setup", "Mode", "DOS");
    stored_.Write("Setup", "Copies", "1");
    overlay_.Override("Setup", "Mode", "WINDOWS");
  }

  MemorySettingsStore stored_;
  SettingsOverlay overlay_{stored_};
};

TEST_F(SettingsOverlayTest, AnOverrideHidesTheStoredText) {
  EXPECT_EQ(overlay_.Read("Setup", "Mode"), "WINDOWS");
  EXPECT_EQ(overlay_.Read("Setup", "Copies"), "1");
  EXPECT_EQ(overlay_.ReadSection("Setup"), (Entries{{"Copies", "1"}, {"Mode", "WINDOWS"}}));
}

TEST_F(SettingsOverlayTest, WritesReachOnlyWhatIsNotOverridden) {
  overlay_.Write("Setup", "Mode", "PLAIN");
  overlay_.Write("Setup", "Copies", "2");
  EXPECT_EQ(overlay_.Read("Setup", "Mode"), "PLAIN");
  EXPECT_EQ(stored_.Read("Setup", "Mode"), "DOS");
  EXPECT_EQ(stored_.Read("Setup", "Copies"), "2");
}

TEST_F(SettingsOverlayTest, ADeletedOverrideDoesNotShowTheStoredTextAgain) {
  overlay_.Delete("Setup", "Mode");
  overlay_.Delete("Setup", "Copies");
  EXPECT_EQ(overlay_.Read("Setup", "Mode"), std::nullopt);
  EXPECT_EQ(overlay_.ReadSection("Setup"), Entries());
  EXPECT_EQ(overlay_.Sections(), Names());
  EXPECT_EQ(stored_.Read("Setup", "Mode"), "DOS");
  EXPECT_EQ(stored_.Read("Setup", "Copies"), std::nullopt);
}

TEST_F(SettingsOverlayTest, SectionsAreThoseOfBothStoresOnce) {
  stored_.Write("Export", "Format", "txt");
  overlay_.Override("Characters", "12 cpi", "77");
  EXPECT_EQ(overlay_.Sections(), (Names{"Characters", "Export", "Setup"}));
}

}  // namespace
}  // namespace kel
