// The tables of a PostgreSQL database and how their names are spelled.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/qt/qt_sql_connection.h"

namespace kel {

/// A copy of the server's catalog, without its own tables. What it does not hold it looks up anew,
/// since other programs make tables, too.
class PostgresCatalog {
 public:
  /// The connection outlives it.
  explicit PostgresCatalog(QtSqlConnection& connection) : connection_(connection) {}

  struct Table {
    std::string schema;
    std::string name;
    bool needs_schema = false;  // its name alone means another table, or none
    std::unordered_map<int, std::string> columns = {};  // by their numbers

    /// As columns of statements name the table.
    std::string Spelled() const { return needs_schema ? schema + "." + name : name; }
  };

  /// Reads the catalog unless that is done. Finding a table by its number while its rows are read
  /// would take these into memory, so do it before.
  void Require();
  /// A statement has run that may have changed names.
  void Forget() { loaded_ = false; }

  /// Nothing for the server's own tables.
  const Table* TableOf(std::uint32_t oid);
  /// By the name that Table::Spelled gives, of what was read so far.
  const Table* KnownTable(const std::string& spelled) const;
  std::vector<std::string> KeyOf(const std::string& spelled);
  /// A name of a table or column as it is spelled in the database: exactly so, else in another case
  /// of letters, else as it came.
  std::string Spelling(std::string_view name);

 private:
  void Load();
  void AddSpelling(const std::string& name);
  std::optional<std::string> FindSpelling(std::string_view name) const;

  QtSqlConnection& connection_;
  bool loaded_ = false;
  std::unordered_map<std::uint32_t, Table> tables_;      // by oid
  std::unordered_map<std::string, std::uint32_t> oids_;  // by Table::Spelled
  std::unordered_map<std::string, std::vector<std::string>>
      spellings_;  // by the name in small letters
};

}  // namespace kel
