#include "command/command_fixture.h"
#include "databases/servers.h"

namespace kel::testing {
namespace {

class ServerReportTest : public CommandTest {};

TEST_F(ServerReportTest, ReportsOfServersAreThoseOfTheSameRowsInAFile) {
  const auto driver = OpenDatabaseUrl(PostgresUrl());
  driver->Execute("DROP TABLE IF EXISTS ledger");
  driver->Execute(
      "CREATE TABLE Ledger AS SELECT i AS code, 'Account ' || i AS \"AccName\", i * 1.50 AS opening"
      " FROM generate_series(1, 3000) g(i)");
  std::string csv = "code,AccName,opening\r\n";
  const auto rows = driver->Prepare("SELECT * FROM ledger");
  while (rows->Step()) {
    csv += Shown(rows->Cell(0)) + "," + Shown(rows->Cell(1)) + "," + Shown(rows->Cell(2)) + "\r\n";
  }
  const std::string expected =
      Report({Write("Ledger.csv", csv), "--align", "r,l,r", "--widths", "6,20,12"});
  const Words sql = {"--sql", "SELECT * FROM [Ledger] ORDER BY code", "--widths", "6,20,12"};
  EXPECT_EQ(Report(Words{"--db", PostgresUrl()} + sql), expected);
  EXPECT_EQ(Report(Words{"--db", OdbcPostgresUrl()} + sql), expected);
  ExpectFailure({"report", "--db", PostgresUrl(), "--sql", "DELETE FROM ledger RETURNING code"},
                {"read-only transaction"});
}

}  // namespace
}  // namespace kel::testing
