#include "platform/qt/ini_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "common/error.h"

namespace kel {
namespace {

using namespace std::string_literals;

TEST(IniTextTest, AnyTextComesBackAsItWas) {
  const std::vector<std::string> texts = {"",
                                          " ",
                                          "  leading and trailing  ",
                                          "a, b",
                                          ",",
                                          "\"",
                                          "\"quoted\"",
                                          "a;b",
                                          "#",
                                          "x=y",
                                          "\\",
                                          "\\n",
                                          "line\r\nline\n",
                                          "\t",
                                          "a\0b"s,
                                          "\0001"s,
                                          "@",
                                          "@@",
                                          "@Invalid()",
                                          "@ByteArray(x)",
                                          "@Variant(x)",
                                          "@Size(1 2)",
                                          "\033C",
                                          "\001f",
                                          "\u20b9 1,00,000",
                                          "\u0915\u0941",
                                          "\U0001F4D2",
                                          "\xEF\xBB\xBF",
                                          "\xEF\xBB\xBFx",
                                          "\xff",
                                          "caf\xe9",
                                          "\xed\xa0\x80",
                                          "%20",
                                          "True",
                                          "12",
                                          "0x1F",
                                          std::string(100'000, 'x')};
  SettingsMap settings;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    settings[{"Texts", std::to_string(i)}] = texts[i];
    settings[{"Names" + texts[i].substr(0, 20), texts[i].substr(0, 20)}] = "named";
  }
  EXPECT_EQ(ParseIni(IniText(settings)), settings);
}

TEST(IniTextTest, RandomBytesComeBackAsTheyWere) {
  std::mt19937 random(11);
  for (int round = 0; round < 20; ++round) {
    SettingsMap settings;
    const auto bytes = [&random] {
      // Few different ones, so that escapes, quotes and digits meet.
      static const std::string alphabet = "aF0 \\/\"%,;=@[]()x\n\r\t\0\x1b\xc3\xa4\xff"s;
      std::string text(random() % 12, ' ');
      for (char& c : text) c = alphabet[random() % alphabet.size()];
      return text;
    };
    for (int i = 0; i < 30; ++i) settings[{bytes(), bytes()}] = bytes();
    const std::string ini = IniText(settings);
    ASSERT_EQ(ParseIni(ini), settings) << ini;
  }
}

TEST(IniTextTest, NoSettingsAreAnEmptyFile) {
  EXPECT_TRUE(ParseIni("").empty());
  EXPECT_TRUE(ParseIni(IniText({})).empty());
}

TEST(IniTextTest, ReadsWhatAPersonEdited) {
  const SettingsMap expected = {{{"Setup", "Mode"}, "WINDOWS"},
                                {{"Setup\\DOS", "TopMargin"}, "7"},
                                {{"Setup\\DOS", "Font"}, "12 cpi"},
                                {{"Setup", "Printer"}, "Epson, \u20b9"}};
  EXPECT_EQ(ParseIni("; my printer\r\n[Setup]\r\nMode = WINDOWS\r\n\r\nDOS\\TopMargin=7\r\n"
                     "DOS\\Font=12 cpi\r\nPrinter=\"Epson, \u20b9\"\r\n"),
            expected);
}

TEST(IniTextTest, RefusesWhatIsNotSettingsEachTimeItIsRead) {
  const std::vector<std::string> texts = {
      "hello world\n",
      "[Setup]\nMode\n",
      "[Setup\nMode=DOS\n",
      "Mode=DOS\n",
      "[Setup]\nMode=DOS, WINDOWS\n",
      "[Setup]\nSize=@Size(1 2)\n",
      "[Setup]\nMode=\xff\n",
      "[Setup]\nMode=a\0b\n"s,
      "%PDF-1.4\n1 0 obj\n<< /Type /Catalog >>\n",
  };
  for (const std::string& text : texts) {
    for (int time = 0; time < 2; ++time) {
      try {
        ParseIni(text);
        ADD_FAILURE() << text;
      } catch (const Error& failure) {
        EXPECT_EQ(failure.Number(), error_number::kInvalidFileFormat) << text;
      }
    }
  }
}

}  // namespace
}  // namespace kel
