#include "platform/qt/ini_text.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/errors.h"

namespace kel {
namespace {

using namespace std::string_literals;

TEST(IniTextTest, AnySectionKeyAndTextComeBackAsTheyWere) {
  std::istringstream list(
      "| | a |A|a|a, "
      "b|\"|\"q\"|a;b|#|x=y|[x]|/|a/b|\\|a\\b|\\\\|\\a|a\\|\\n|\t\r\n|a\0b|\0001|\001f|"
      "\033C|\x7f|@|@@|@Invalid()|@ByteArray(x)|@Size(1 2)|%|%%|%2F|%5C|%zz|General|0x1F|"
      "\u20b9 1,00|\U0001F4D2|\xEF\xBB\xBFx|\xff|caf\xe9|a\xc3/\\|\xed\xa0\x80"s);
  std::vector<std::string> texts;
  for (std::string text; std::getline(list, text, '|');) texts.push_back(text);
  SettingsMap settings = {{{"Setup", "Long"}, std::string(100'000, 'x')}};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    for (std::size_t j = 0; j < texts.size(); ++j) {
      settings[{texts[i], texts[j]}] = texts[(i + j) % texts.size()];
    }
  }
  EXPECT_TRUE(ParseIni(IniText(settings)) == settings);
}

TEST(IniTextTest, ReadsWhatAPersonEdited) {
  const SettingsMap expected = {{{"Setup", "Mode"}, "WINDOWS"},
                                {{"Setup\\DOS", "Font"}, "12 \u20b9, cpi"}};
  EXPECT_EQ(ParseIni("; mine\r\n[Setup]\r\nMode = WINDOWS\r\n\r\nDOS\\Font=\"12 \u20b9, cpi\"\r\n"),
            expected);
}

TEST(IniTextTest, RefusesWhatIsNotSettingsEachTimeItIsRead) {
  for (const std::string& text :
       {"hello world\n"s, "[Setup\nMode=DOS\n"s, "Mode=DOS\n"s, "[Setup]\nMode=DOS, WINDOWS\n"s,
        "[Setup]\nMode=@Size(1 2)\n"s, "[Setup]\nMode=\xff\n"s, "[Setup]\nMode=a\0b\n"s}) {
    for (int time = 0; time < 2; ++time) {
      EXPECT_EQ(testing::ErrorOf([&] { ParseIni(text); }).Number(), 321) << text;
    }
  }
}

}  // namespace
}  // namespace kel
