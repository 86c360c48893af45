#include "command/command_fixture.h"

namespace kel {
namespace {

class HelpTest : public CommandTest {};

TEST_F(HelpTest, HelpIsTheUsageOnStandardOutput) {
  const RunResult general = Keldll({"--help"});
  EXPECT_EQ(general.status, 0);
  EXPECT_EQ(general.err, "");
  for (const std::string verb : {"report", "browse", "words", "setup", "settings"}) {
    EXPECT_NE(general.out.find("keldll " + verb), std::string::npos) << verb;
    const RunResult help = Keldll({"help", verb});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_TRUE(help.out.starts_with("usage: keldll " + verb)) << help.out;
    EXPECT_EQ(Keldll({verb, "--help"}).out, help.out);
  }
}

TEST_F(HelpTest, VersionIsOneLine) {
  const RunResult result = Keldll({"--version"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out.substr(0, 7), "keldll ");
  EXPECT_EQ(result.out.find('\n'), result.out.size() - 1);
}

TEST_F(HelpTest, WrongVerbsAreWrongUsage) {
  ExpectWrongUsage({}, "a verb is missing");
  ExpectWrongUsage({"print"}, "there is no verb \"print\"");
  ExpectWrongUsage({"--colour"}, "--colour");
  ExpectWrongUsage({"help", "print"}, "there is no verb \"print\"");
  ExpectWrongUsage({"--version", "now"}, "unexpected \"now\"");
}

TEST_F(HelpTest, VerbsOfLaterVersionsSaySo) {
  ExpectFailure({"browse", "x.csv"}, {"browse is not available in this version"});
  ExpectFailure({"setup"}, {"setup is not available in this version"});
}

}  // namespace
}  // namespace kel
