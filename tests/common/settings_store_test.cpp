#include "common/settings_store.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kel {
namespace {

TEST(SettingsOverlay, OverridesAreWrittenAndDeletedWithoutTouchingTheStoreBeneath) {
  using Entries = SettingsStore::Entries;
  using Names = std::vector<std::string>;
  MemorySettingsStore stored;
  stored.Write("Setup\\DOS", "Lines", "66");
  stored.Write("Setup", "Mode", "DOS");
  stored.Write("Setup", "Copies", "1");
  SettingsOverlay overlay(stored);
  overlay.Override("Setup", "Mode", "WINDOWS");
  overlay.Override("Characters", "12 cpi", "77");
  EXPECT_EQ(overlay.ReadSection("Setup"), (Entries{{"Copies", "1"}, {"Mode", "WINDOWS"}}));
  EXPECT_EQ(overlay.Sections(), (Names{"Characters", "Setup", "Setup\\DOS"}));

  overlay.Write("Setup", "Mode", "PLAIN");
  overlay.Write("Setup", "Copies", "2");
  EXPECT_EQ(overlay.Read("Setup", "Mode"), "PLAIN");
  EXPECT_EQ(stored.ReadSection("Setup"), (Entries{{"Copies", "2"}, {"Mode", "DOS"}}));

  overlay.Delete("Setup", "Mode");
  overlay.Delete("Setup", "Copies");
  EXPECT_EQ(overlay.Read("Setup", "Mode"), std::nullopt);
  EXPECT_EQ(overlay.Sections(), (Names{"Characters", "Setup\\DOS"}));
  EXPECT_EQ(stored.ReadSection("Setup"), (Entries{{"Mode", "DOS"}}));
}

}  // namespace
}  // namespace kel
