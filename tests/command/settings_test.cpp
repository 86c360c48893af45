#include "command/command_fixture.h"

namespace kel {
namespace {

class SettingsTest : public CommandTest {
 protected:
  void Set(const std::string& key, const std::string& value) const {
    const RunResult result = Keldll({"settings", "set", key, value});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out + result.err, "");
  }
  std::string Get(const std::string& key) const { return Keldll({"settings", "get", key}).out; }
};

TEST_F(SettingsTest, FreshUserHasThePublishedDefaultsInTheirOrder) {
  const RunResult result = Keldll({"settings"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out,
            "Setup/Mode=DOS\nSetup/Printer=Epson LX-800\nSetup/Port=LPT1:\nSetup/DateTime=True\n"
            "Setup/ColumnDivider=False\n"
            "Setup\\DOS/Font=10 cpi\nSetup\\DOS/TopMargin=5\nSetup\\DOS/BottomMargin=1\n"
            "Setup\\DOS/LeftMargin=0\nSetup\\DOS/RightMargin=0\nSetup\\DOS/PageHeight=12\n"
            "Setup\\DOS/PageWidth=8.5\nSetup\\DOS/Lines=60\nSetup\\DOS/Cols=80\n"
            "Setup\\Windows/Font=Courier New\nSetup\\Windows/FontBold=False\n"
            "Setup\\Windows/FontItalic=False\nSetup\\Windows/FontUnderline=False\n"
            "Setup\\Windows/FontStrikethru=False\nSetup\\Windows/ForeColor=0\n"
            "Setup\\Windows/FontSize=10\nSetup\\Windows/TopMargin=5\n"
            "Setup\\Windows/BottomMargin=1\nSetup\\Windows/LeftMargin=0\n"
            "Setup\\Windows/RightMargin=0\nSetup\\Windows/PageHeight=12\n"
            "Setup\\Windows/PageWidth=8.5\nSetup\\Windows/Lines=65\nSetup\\Windows/Cols=96\n"
            "Setup\\Windows/Portrait=True\n");
}

TEST_F(SettingsTest, WhatIsSetIsThereForTheNextRun) {
  Set("Setup\\DOS/Lines", "66");
  Set("Characters/12 cpi", "77");
  Set("ListView/Widths", "a/b=c \"d\", ;e\\f\xE2\x82\xB9");
  EXPECT_EQ(Get("Setup\\DOS/Lines"), "66\n");
  EXPECT_EQ(Get("Characters/12 cpi"), "77\n");
  EXPECT_EQ(Get("ListView/Widths"), "a/b=c \"d\", ;e\\f\xE2\x82\xB9\n");
  EXPECT_EQ(Get("Setup\\DOS/Cols"), "80\n");
  const std::string list = Keldll({"settings"}).out;
  EXPECT_NE(list.find("Setup\\DOS/Lines=66\n"), std::string::npos);
  EXPECT_TRUE(
      list.ends_with("Setup\\Windows/Portrait=True\nCharacters/12 cpi=77\n"
                     "ListView/Widths=a/b=c \"d\", ;e\\f\xE2\x82\xB9\n"))
      << list;
}

TEST_F(SettingsTest, ResetBringsTheDefaultsBack) {
  Set("Setup/Mode", "WINDOWS");
  Set("Export/Format", "2");
  EXPECT_EQ(Keldll({"settings", "reset"}).status, 0);
  EXPECT_EQ(Get("Setup/Mode"), "DOS\n");
  EXPECT_EQ(Keldll({"settings"}).out.find("Export"), std::string::npos);
}

TEST_F(SettingsTest, PublishedSettingsTakeOnlyTheirType) {
  ExpectWrongUsage({"settings", "set", "Setup\\DOS/Lines", "many"},
                   "\"many\" is not a whole number");
  ExpectWrongUsage({"settings", "set", "Setup\\DOS/Lines", "32768"}, "not a whole number");
  ExpectWrongUsage({"settings", "set", "Setup/DateTime", "yes"}, "\"yes\" is not True or False");
  ExpectWrongUsage({"settings", "set", "Setup\\DOS/PageHeight", "tall"},
                   "\"tall\" is not a number");
  Set("Setup\\DOS/LeftMargin", "-3");
  EXPECT_EQ(Get("Setup\\DOS/LeftMargin"), "-3\n");
}

TEST_F(SettingsTest, WrongWordsAreWrongUsage) {
  ExpectWrongUsage({"settings", "list"}, "unexpected \"list\"");
  ExpectWrongUsage({"settings", "get"}, "something is missing");
  ExpectWrongUsage({"settings", "get", "Lines"}, "a key is written Section/Key");
  ExpectWrongUsage({"settings", "get", "/Lines"}, "a key is written Section/Key");
  ExpectWrongUsage({"settings", "get", "Setup/"}, "a key is written Section/Key");
  ExpectWrongUsage({"settings", "set", "Setup/Mode"}, "something is missing");
  ExpectWrongUsage({"settings", "reset", "all"}, "unexpected \"all\"");
}

TEST_F(SettingsTest, UnknownKeyIsAFailure) {
  ExpectFailure({"settings", "get", "Setup/Nothing"}, {"Setup/Nothing"});
}

TEST_F(SettingsTest, StoreThatCannotBeKeptIsAFailure) {
  Write("plain", "");
  SetEnvironment("XDG_CONFIG_HOME", Path("plain/below"));
  ExpectFailure({"settings", "set", "Setup/Mode", "WINDOWS"}, {"plain/below"});
}

}  // namespace
}  // namespace kel
