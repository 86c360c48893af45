#include "platform/qt/qt_sql_native.h"

#include <QLibrary>
#include <QSqlDriver>
#include <QSqlResult>
#include <QString>
#include <QVariant>
#include <array>

namespace kel {
namespace {

/// The functions of libpq that are needed, by their published names and signatures.
struct Libpq {
  static const Libpq& Get() {
    static const Libpq libpq = Load();
    return libpq;
  }

  bool is_there = false;  // else the functions stand for a result without rows and tables
  unsigned int (*ftable)(const void* result, int column) = [](const void*, int) { return 0U; };
  int (*ftablecol)(const void* result, int column) = [](const void*, int) { return 0; };
  char* (*getvalue)(const void* result, int row, int column) = [](const void*, int, int) {
    return static_cast<char*>(nullptr);
  };
  int (*getlength)(const void* result, int row, int column) = [](const void*, int, int) {
    return 0;
  };
  int (*getisnull)(const void* result, int row, int column) = [](const void*, int, int) {
    return 1;
  };

 private:
  static Libpq Load();
};

template <typename Function>
bool Resolve(QLibrary& library, const char* name, Function& function) {
  const QFunctionPointer found = library.resolve(name);
  if (found != nullptr) function = reinterpret_cast<Function>(found);
  return found != nullptr;
}

/// Qt's driver has loaded it already; the name finds the same one.
Libpq Libpq::Load() {
#ifdef Q_OS_WIN
  QLibrary library("libpq");
#else
  QLibrary library("pq", 5);
#endif
  Libpq libpq;
  libpq.is_there = Resolve(library, "PQftable", libpq.ftable) &&
                   Resolve(library, "PQftablecol", libpq.ftablecol) &&
                   Resolve(library, "PQgetvalue", libpq.getvalue) &&
                   Resolve(library, "PQgetlength", libpq.getlength) &&
                   Resolve(library, "PQgetisnull", libpq.getisnull);
  return libpq;
}

constexpr std::uint16_t kBaseColumnName = 22;  // SQL_DESC_BASE_COLUMN_NAME
constexpr std::int16_t kNoError = 0;           // SQL_SUCCESS

using ColumnAttribute = std::int16_t (*)(void* statement, std::uint16_t column,
                                         std::uint16_t attribute, void* text, std::int16_t bytes,
                                         std::int16_t* length, void* number);

ColumnAttribute FindColumnAttribute() {
#ifdef Q_OS_WIN
  QLibrary library("odbc32");
#else
  QLibrary library("odbc", 2);
#endif
  return reinterpret_cast<ColumnAttribute>(library.resolve("SQLColAttributeW"));
}

/// The pointer that a driver hands out under the name of its type.
void* Handle(const QSqlQuery& query, const char* type) {
  if (query.result() == nullptr) return nullptr;
  const QVariant handle = query.result()->handle();
  if (qstrcmp(handle.typeName(), type) != 0) return nullptr;
  return *static_cast<void* const*>(handle.constData());
}

}  // namespace

std::optional<PostgresResult> PostgresResult::Of(const QSqlQuery& query) {
  const void* const result = Handle(query, "pg_result*");
  if (result == nullptr || !Libpq::Get().is_there) return std::nullopt;
  return PostgresResult(result);
}

bool PostgresResult::IsKnown() { return Libpq::Get().is_there; }

std::uint32_t PostgresResult::TableOf(int column) const {
  return Libpq::Get().ftable(result_, column);
}

int PostgresResult::NumberInTable(int column) const {
  return Libpq::Get().ftablecol(result_, column);
}

std::optional<std::string_view> PostgresResult::Cell(int column) const {
  // A result of a forward-only query holds one row.
  const Libpq& libpq = Libpq::Get();
  if (libpq.getisnull(result_, 0, column) != 0) return std::nullopt;
  return std::string_view(libpq.getvalue(result_, 0, column),
                          static_cast<std::size_t>(libpq.getlength(result_, 0, column)));
}

std::string OdbcBaseColumn(const QSqlQuery& query, int column) {
  static const ColumnAttribute column_attribute = FindColumnAttribute();
  void* const statement = Handle(query, "void*");
  if (statement == nullptr || column_attribute == nullptr) return {};
  std::array<char16_t, 512> name{};
  std::int16_t bytes = 0;
  if (column_attribute(statement, static_cast<std::uint16_t>(column + 1), kBaseColumnName,
                       name.data(), sizeof name, &bytes, nullptr) != kNoError) {
    return {};
  }
  return QString::fromUtf16(name.data()).toStdString();
}

}  // namespace kel
