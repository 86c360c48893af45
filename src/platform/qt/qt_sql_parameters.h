// The values of statements on databases of Qt's.
#pragma once

#include <QSqlQuery>
#include <span>
#include <string>
#include <string_view>

#include "data/driver.h"

namespace kel {

/// A statement for PostgreSQL with its values in the places of its "?", as literals whose types the
/// server infers. Qt's own way would prepare the statement on the server and drop it there later,
/// at a time when another one may be read. Throws Error when there are not as many places as
/// values, and for a NUL in a text.
std::string WithPostgresLiterals(std::string_view sql, std::span<const Parameter> parameters);

/// What a database takes as texts.
enum class BoundValues {
  kTexts,  // all, for servers that infer the types; binary aside
  kTextDates,
  kTyped,  // texts only
};

/// Gives a prepared query its values.
void BindValues(QSqlQuery& query, std::span<const Parameter> parameters, BoundValues as);

}  // namespace kel
