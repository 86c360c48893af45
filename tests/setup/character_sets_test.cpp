#include "setup/character_sets.h"

#include <gtest/gtest.h>

namespace kel {
namespace {

using Sets = std::vector<CharacterSet>;
const Sets kUsual = {{"10 cpi", "80"}, {"12 cpi", "77"}, {"15 cpi", "103"}, {"17 cpi", "15"}};

TEST(CharacterSetsTest, TheUsualSetsAreStoredWheneverThereAreNone) {
  MemorySettingsStore store;
  EXPECT_EQ(ListCharacterSets(store), kUsual);
  EXPECT_EQ(store.Read("Characters", "15 cpi"), "103");
  for (const CharacterSet& set : kUsual) DeleteCharacterSet(store, set.name);
  EXPECT_TRUE(store.ReadSection("Characters").empty());
  EXPECT_EQ(ListCharacterSets(store), kUsual);
}

TEST(CharacterSetsTest, AnAddedSetStandsInTheOrderOfPitchesAndReplacesItsNamesake) {
  MemorySettingsStore store;
  for (const auto& [pitch, code] : {std::pair("12", "77"), {" 5 cpi", "87"}, {"16.5", "15.4x"}}) {
    EXPECT_FALSE(AddCharacterSet(store, pitch, code)) << pitch;
  }
  EXPECT_EQ(ListCharacterSets(store),
            (Sets{{"5 cpi", "87"}, {"12 cpi", "77"}, {"16.5 cpi", "15"}}));
  EXPECT_FALSE(AddCharacterSet(store, "12 cpi", "255"));
  EXPECT_EQ(store.Read("Characters", "12 cpi"), "255");
}

TEST(CharacterSetsTest, OnlyAPitchAboveZeroAndACodeOfOneByteAreStored) {
  struct Case {
    const char* pitch;
    const char* code;
    const char* message;
  };
  MemorySettingsStore store;
  for (const Case& typed : {Case{"0", "77", "Invalid characters per inch."},
                            {"", "0", "Invalid characters per inch."},
                            {"12", "0.4", "Invalid decimal codes"},
                            {"12", "256", "Invalid decimal codes"},
                            {"12", "1e99", "Invalid decimal codes"},
                            {"12", "M", "Invalid decimal codes"}}) {
    const auto fault = AddCharacterSet(store, typed.pitch, typed.code);
    ASSERT_TRUE(fault) << typed.pitch << " " << typed.code;
    EXPECT_EQ(fault->message, typed.message);
    EXPECT_EQ(fault->field == CharacterSetField::kCode, fault->message == "Invalid decimal codes");
  }
  EXPECT_TRUE(store.ReadSection("Characters").empty());
}

}  // namespace
}  // namespace kel
