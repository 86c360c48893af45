#include "command/command_fixture.h"
#include "platform/qt/qt_settings_store.h"

namespace kel::testing {
namespace {

using SettingsTest = CommandTest;

TEST_F(SettingsTest, EverySectionIsListedKeptAndReset) {
  const std::string fresh = Keldll({"settings"}).out;
  EXPECT_TRUE(fresh.starts_with("Setup/Mode=DOS\nSetup/Printer=Epson LX-800\nSetup/Port="))
      << fresh;
  EXPECT_TRUE(fresh.ends_with("Setup\\Windows/Cols=96\nSetup\\Windows/Portrait=True\n")) << fresh;

  const std::string text = "a/b=c \"d\", ;e\\f\xE2\x82\xB9";
  const std::vector<std::pair<std::string, std::string>> settings = {
      {"Setup\\DOS/LeftMargin", "-3"},
      {"Setup\\Windows/Portrait", "False"},
      {"Characters/12 cpi", "77"},
      {"ListView/Day/Book", text}};
  for (const auto& [key, value] : settings) {
    const RunResult result = Keldll({"settings", "set", key, value});
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_EQ(Keldll({"settings", "get", key}).out, value + '\n');
  }
  const std::string list = Keldll({"settings"}).out;
  EXPECT_TRUE(Contains(list, "\nSetup\\Windows/Portrait=False\n")) << list;
  EXPECT_TRUE(list.ends_with("\nCharacters/12 cpi=77\nListView/Day/Book=" + text + '\n')) << list;
  QtSettingsStore store(Path("config/KELDLL/KELDLL.ini"));
  EXPECT_EQ(store.Read("ListView", "Day/Book"), text);
  EXPECT_EQ(Keldll({"settings", "get", "Setup\\DOS/Cols"}).out, "80\n");

  EXPECT_EQ(Keldll({"settings", "reset"}).status, 0);
  EXPECT_EQ(Keldll({"settings"}).out, fresh);
}

}  // namespace
}  // namespace kel::testing
