#include "platform/qt/settings_names.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kel {
namespace {

TEST(SettingsNamesTest, PublishedNamesAreReadablePaths) {
  EXPECT_EQ(SettingsPath("Setup", "Mode"), "Setup/Mode");
  EXPECT_EQ(SettingsPath("Setup\\DOS", "TopMargin"), "Setup/DOS/TopMargin");
  EXPECT_EQ(SettingsPath("Characters", "12 cpi"), "Characters/12 cpi");
}

TEST(SettingsNamesTest, EveryNameHasAPathOfItsOwnAndComesBack) {
  using namespace std::string_literals;
  const std::vector<std::string> names = {"",           "a",
                                          "A",          " a ",
                                          "a/b",        "a\\b",
                                          "/",          "\\",
                                          "\\\\",       "a\\",
                                          "\\a",        "%",
                                          "%%",         "%2F",
                                          "%5C",        "%25",
                                          "%zz",        "a%",
                                          "=",          "[x]",
                                          ";#",         "\t\r\n",
                                          "a\0b"s,      "\x7f",
                                          "General",    "\u00e4\u0915\u20b9",
                                          "\U0001F4D2", "\xEF\xBB\xBFx",
                                          "\xff\xfe",   "\xc3",
                                          "a\xc3/\\",   "\xed\xa0\x80"};
  std::set<QString> paths;
  for (const std::string& section : names) {
    for (const std::string& key : names) {
      const QString path = SettingsPath(section, key);
      EXPECT_TRUE(paths.insert(path).second) << path.toStdString();
      EXPECT_EQ(SettingsName(path), std::pair(section, key)) << path.toStdString();
      EXPECT_FALSE(path.startsWith('/') || path.endsWith('/') || path.contains("//"));
    }
  }
}

}  // namespace
}  // namespace kel
