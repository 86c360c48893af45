#include "platform/qt/postgres_catalog.h"

#include <QVariant>
#include <algorithm>

namespace kel {
namespace {

constexpr std::uint32_t kFirstOid = 16384;  // of what users make

constexpr const char* kTables =
    "SELECT CAST(c.oid AS int8), n.nspname, c.relname, CAST(pg_table_is_visible(c.oid) AS int4),"
    " CAST(a.attnum AS int4), a.attname"
    " FROM pg_attribute a JOIN pg_class c ON c.oid = a.attrelid"
    " JOIN pg_namespace n ON n.oid = c.relnamespace"
    " WHERE c.relkind IN ('r', 'v', 'm', 'f', 'p') AND a.attnum > 0 AND NOT a.attisdropped"
    " AND n.nspname NOT IN ('pg_catalog', 'information_schema', 'pg_toast')";

constexpr const char* kKey =
    "SELECT a.attname FROM pg_index i"
    " JOIN pg_attribute a ON a.attrelid = i.indrelid AND a.attnum = ANY(i.indkey)"
    " WHERE i.indisprimary AND i.indrelid = %1"
    " ORDER BY array_position(CAST(i.indkey AS int2[]), a.attnum)";

/// PostgreSQL folds the letters A to Z only.
std::string SmallLetters(std::string_view name) {
  std::string small(name);
  for (char& c : small) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return small;
}

QSqlQuery Read(QtSqlConnection& connection, const QString& sql) {
  QSqlQuery query = connection.NewQuery();
  if (!query.exec(sql)) {
    throw QtSqlError("cannot read the names of the database", query.lastError());
  }
  return query;
}

std::string TextOf(const QSqlQuery& query, int column) {
  return query.value(column).toString().toStdString();
}

}  // namespace

void PostgresCatalog::Require() {
  if (!loaded_) Load();
}

void PostgresCatalog::Load() {
  tables_.clear();
  oids_.clear();
  spellings_.clear();
  QSqlQuery query = Read(connection_, kTables);
  while (query.next()) {
    Table& table = tables_[query.value(0).toUInt()];
    if (table.name.empty()) {
      table.schema = TextOf(query, 1);
      table.name = TextOf(query, 2);
      table.needs_schema = query.value(3).toInt() == 0;
    }
    AddSpelling(table.columns[query.value(4).toInt()] = TextOf(query, 5));
  }
  for (const auto& [oid, table] : tables_) {
    oids_[table.Spelled()] = oid;
    AddSpelling(table.name);
    AddSpelling(table.schema);
  }
  loaded_ = true;
}

void PostgresCatalog::AddSpelling(const std::string& name) {
  std::vector<std::string>& known = spellings_[SmallLetters(name)];
  if (std::find(known.begin(), known.end(), name) == known.end()) known.push_back(name);
}

const PostgresCatalog::Table* PostgresCatalog::TableOf(std::uint32_t oid) {
  if (oid < kFirstOid) return nullptr;
  Require();
  if (tables_.count(oid) == 0) Load();
  const auto found = tables_.find(oid);
  return found == tables_.end() ? nullptr : &found->second;
}

const PostgresCatalog::Table* PostgresCatalog::KnownTable(const std::string& spelled) const {
  const auto found = oids_.find(spelled);
  return found == oids_.end() ? nullptr : &tables_.at(found->second);
}

std::vector<std::string> PostgresCatalog::KeyOf(const std::string& spelled) {
  std::vector<std::string> key;
  Require();
  if (KnownTable(spelled) == nullptr) Load();
  if (KnownTable(spelled) == nullptr) return key;
  QSqlQuery query = Read(connection_, QString(kKey).arg(oids_.at(spelled)));
  while (query.next()) key.push_back(TextOf(query, 0));
  return key;
}

std::string PostgresCatalog::Spelling(std::string_view name) {
  Require();
  std::optional<std::string> found = FindSpelling(name);
  if (!found) {
    Load();
    found = FindSpelling(name);
  }
  return found.value_or(std::string(name));
}

/// Of several spellings the one of names made without quotes goes first.
std::optional<std::string> PostgresCatalog::FindSpelling(std::string_view name) const {
  const std::string small = SmallLetters(name);
  const auto found = spellings_.find(small);
  if (found == spellings_.end()) return std::nullopt;
  const std::vector<std::string>& known = found->second;
  for (const std::string_view wanted : {name, std::string_view(small)}) {
    if (std::find(known.begin(), known.end(), wanted) != known.end()) return std::string(wanted);
  }
  return known.front();
}

}  // namespace kel
