#include "keldll/source_options.h"

#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include "common/names.h"
#include "data/sql_text.h"
#include "data/sqlite.h"
#include "keldll/file_ending.h"
#include "platform/qt/qt_sql.h"

namespace kel::command {
namespace {

constexpr std::string_view kPostgresScheme = "postgresql:";

SourceOptions ReadDatabase(const Arguments& arguments) {
  if (!arguments.Has(kDbOption.name)) throw UsageError("--sql needs --db");
  if (!arguments.Has(kSqlOption.name)) throw UsageError("--db needs --sql");
  SourceOptions source{SourceKind::kDatabaseFile, *arguments.Value(kDbOption.name), "",
                       *arguments.Value(kSqlOption.name)};
  if (IsDatabaseUrl(source.name)) {
    source.kind = SourceKind::kServer;
    source.server = std::exchange(source.name, WithoutPassword(source.name));
  }
  return source;
}

SourceOptions ReadFile(const std::string& path) {
  if (EndsAs(path, ".json")) return {SourceKind::kGridFile, path, "", ""};
  if (EndsAs(path, ".csv")) return {SourceKind::kCsvFile, path, "", ""};
  throw UsageError("source \"" + path + "\": a file's name ends in .json or .csv");
}

}  // namespace

SourceOptions ReadSource(const Arguments& arguments) {
  const std::vector<std::string>& words = arguments.Positional();
  const bool database = arguments.Has(kDbOption.name) || arguments.Has(kSqlOption.name);
  if (words.size() > (database ? 0U : 1U)) {
    throw UsageError(database ? "\"" + words[0] + "\" and --db: there is one source only"
                              : "unexpected \"" + words[1] + "\"");
  }
  if (database) return ReadDatabase(arguments);
  if (words.empty()) throw UsageError("the source is missing");
  return ReadFile(words[0]);
}

std::string CaptionOf(const SourceOptions& source) {
  const std::string table = FirstTableName(source.sql);
  return table.empty() ? std::filesystem::path(source.name).stem().string() : table;
}

Connection OpenDatabase(const SourceOptions& source, Access access) {
  if (source.kind == SourceKind::kDatabaseFile) return Connection(OpenSqlite(source.name, access));
  Connection connection(OpenDatabaseUrl(source.server));
  const bool postgres = SameName(source.name.substr(0, kPostgresScheme.size()), kPostgresScheme);
  if (postgres && access == Access::kRead) {
    // As a file is opened for reading only.
    connection.Execute("SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY");
  }
  return connection;
}

}  // namespace kel::command
