// Reports as documents and sheets, through the real command.
#include "command/command_fixture.h"

namespace kel::testing {
namespace {

class ExportTest : public CommandTest {
 protected:
  std::string source_ = Write("sales.csv", "Day,Amount\n01/04/2026,2500.00\n02/04/2026,1200.50\n");
};

TEST_F(ExportTest, TheEndingInAnyCaseDecidesTheFormat) {
  Words job = {"report", source_};
  const std::vector<std::pair<const char*, std::string_view>> files = {
      {"a.DOC", "{\\rtf1"},
      {"-b $(touch z).xlsx", "PK"},
      {"c.Pdf", "%PDF"},
      {"d.xls", "\xd0\xcf\x11\xe0"}};
  for (const auto& file : files) job = job + Words{"-o", Path(file.first)};
  const RunResult result = Keldll(job);
  EXPECT_EQ(result.status, 0) << result.err;
  for (const auto& file : files)
    EXPECT_TRUE(Read(file.first).starts_with(file.second)) << file.first;
}

TEST_F(ExportTest, WhatCannotBeMadeIsToldAndLeavesEveryFileAsItWas) {
  Write("old.doc", "old");
  const Words job = {"report", source_, "-o", Path("old.doc"), "-o"};
  for (const char* ending : {".doc", ".xls", ".xlsx"}) {
    const std::string file = std::string("/dev/full/x") + ending;
    ExpectFailure(job + Words{file}, {file});
    ExpectFailure(Words{"report", source_, "-o", Path("nowhere/x") + ending}, {"nowhere/x"});
  }
  const std::string path = getenv("PATH");
  setenv("PATH", "/nowhere", 1);
  ExpectFailure(job + Words{Path("x.xls")}, {"x.xls", "LibreOffice", ".xlsx"});
  setenv("PATH", path.c_str(), 1);
  EXPECT_FALSE(std::filesystem::exists(Path("x.xls")));
  EXPECT_EQ(Read("old.doc"), "old");
}

}  // namespace
}  // namespace kel::testing
