// Recordsets on databases of servers: what they do on SQLite too.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>

#include "databases/servers.h"
#include "support/recordset_scenarios.h"
#include "support/test_folder.h"

namespace kel {
namespace {

Connection OpenUrl(const std::string& url) { return Connection(OpenDatabaseUrl(url)); }

/// Two people on the server of the tests, by the given ways to it; their tables are gone
/// afterwards.
class ServerUsers {
 public:
  ServerUsers(const std::string& own_url, const std::string& other_url)
      : own_(OpenUrl(own_url)), other_(OpenUrl(other_url)) {
    Drop();
  }
  ~ServerUsers() { Drop(); }
  ServerUsers(const ServerUsers&) = delete;
  ServerUsers& operator=(const ServerUsers&) = delete;

  testing::TwoUsers Get() { return {own_, other_, "SERIAL PRIMARY KEY"}; }

 private:
  void Drop() {
    for (const char* table : {"Acc", "Ledger", "Bare"}) {
      own_.Execute(std::string("DROP TABLE IF EXISTS ") + table);
    }
  }

  Connection own_;
  Connection other_;
};

using Scenario = void (*)(const testing::TwoUsers&);
constexpr std::array<Scenario, 3> kScenarios = {testing::MovesSortsFiltersAndFinds,
                                                testing::AddsChangesAndDeletes,
                                                testing::ARowChangedByOthersIsNotOverwritten};

TEST(RecordsetOnServersTest, EverythingWorksOnPostgresql) {
  for (const Scenario scenario : kScenarios) {
    ServerUsers users(testing::PostgresUrl(), testing::PostgresUrl());
    scenario(users.Get());
  }
}

TEST(RecordsetOnServersTest, EverythingWorksThroughOdbc) {
  for (const Scenario scenario : kScenarios) {
    ServerUsers users(testing::OdbcPostgresUrl(), testing::PostgresUrl());
    scenario(users.Get());
  }
}

TEST(RecordsetOnServersTest, ADriverThatTellsLittleStillWrites) {
  const testing::TestFolder folder;
  const std::string url = testing::OdbcSqliteUrl((folder / "books.db").string());
  Connection own = OpenUrl(url);
  Connection other = OpenUrl(url);
  testing::AddsChangesAndDeletes({own, other, "INTEGER PRIMARY KEY", false});
}

}  // namespace
}  // namespace kel
