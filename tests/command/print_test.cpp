// Reports on paper and in PDF documents, through the real command.
#include "command/command_fixture.h"

namespace kel::testing {
namespace {

class PrintTest : public CommandTest {
 protected:
  std::string source_ = Write("sales.csv", "Day,Amount\n01/04/2026,2500.00\n02/04/2026,1200.50\n");
};

TEST_F(PrintTest, TextModeSendsThePagesBetweenTheCodesOfTheSettings) {
  const std::string set_up("\033C\0\x0b\033M", 6);
  const std::string reset("\033C\0\0\033@", 6);
  ASSERT_EQ(Keldll({"settings", "set", "Characters/12 cpi", "77"}).status, 0);
  const Words job = {"report",        source_, "--set",   "Font=12 cpi", "--set",
                     "PageHeight=11", "--set", "Lines=9", "--print"};
  const RunResult result =
      Keldll(job + Words{"--set", "Port=" + Path("port.prn"), "-o", Path("pages.rpt")});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "") << "nothing was asked for on standard output";
  EXPECT_EQ(Read("port.prn"), set_up + Read("pages.rpt") + reset);

  // What was asked for besides is in place when the printer fails.
  ExpectFailure(job + Words{"--set", "Port=/dev/full", "-o", Path("kept.rpt")},
                {source_, "/dev/full", "No space left"});
  EXPECT_FALSE(Read("kept.rpt").empty());
  ExpectFailure(job + Words{"--set", "Port=USB001"}, {"USB001", "queue:NAME"});
  ExpectFailure(job + Words{"--set", "Port=" + Path("x") + "\" & touch " + Path("y")}, {"quote"});
  EXPECT_FALSE(std::filesystem::exists(Path("y")));
}

TEST_F(PrintTest, TheChosenPagesArePrinted) {
  std::string rows = "No\n";
  for (int i = 0; i < 40; ++i) rows += std::to_string(i) + "\n";
  const Words job = {"report", Write("long.csv", rows), "--set", "Lines=12", "--stamp", "now"};
  ASSERT_EQ(Keldll(job + Words{"--pages", "2-3", "-o", Path("two.rpt"), "--print", "--set",
                               "Port=" + Path("port.prn")})
                .status,
            0);
  const std::string sent = Read("port.prn");
  EXPECT_EQ(sent.substr(6, sent.size() - 12), Read("two.rpt"));
  EXPECT_EQ(std::count(sent.begin(), sent.end(), '\f'), 3) << "the form length is one, too";
}

TEST_F(PrintTest, WindowsModePrintsIntoTheFileThatThePdfPrinterIsGiven) {
  const Words job = {"report",       source_, "--print",          "--set",
                     "Mode=WINDOWS", "--set", "PrinterDevice=PDF"};
  ASSERT_EQ(Keldll(job + Words{"--set", "Port=" + Path("a.PDF"), "-o", Path("b.pdf")}).status, 0);
  EXPECT_TRUE(Read("a.PDF").starts_with("%PDF-"));
  EXPECT_TRUE(Read("b.pdf").starts_with("%PDF-"));
  ExpectFailure(job, {source_, "the PDF printer needs a file"});
  ExpectFailure({"report", source_, "-o", "/dev/full/x.pdf"}, {"/dev/full/x.pdf"});
  ExpectFailure({"report", source_, "-o", Path("c.pdf"), "--set", "PageWidth=0"},
                {"c.pdf", "width of the paper"});
  EXPECT_FALSE(std::filesystem::exists(Path("c.pdf")));
}

}  // namespace
}  // namespace kel::testing
