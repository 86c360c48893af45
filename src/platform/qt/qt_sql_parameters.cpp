#include "platform/qt/qt_sql_parameters.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <array>
#include <charconv>

#include "common/error.h"
#include "data/sql_tokens.h"
#include "platform/qt/qt_sql_connection.h"

namespace kel {
namespace {

std::string DoubleText(double number) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
  return {text.data(), end.ptr};
}

/// The form that means the same whatever the server's setting of backslashes in texts.
void AppendText(std::string& sql, std::string_view text) {
  if (text.find('\0') != std::string_view::npos) {
    throw Error(error_number::kDatabase, "PostgreSQL keeps no NUL in a text");
  }
  const bool escaped = text.find('\\') != std::string_view::npos;
  if (escaped) sql += " E";
  sql += '\'';
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t special = std::min(text.find_first_of("'\\", at), text.size());
    sql += text.substr(at, special - at);
    if (special < text.size()) sql.append(2, text[special]);
    at = special + 1;
  }
  sql += '\'';
}

void AppendBytes(std::string& sql, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  sql += " E'\\\\x";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    sql += kDigits[byte / 16U];
    sql += kDigits[byte % 16U];
  }
  sql += '\'';
}

/// Numbers are quoted too: a bare 0.1 equals no float4, a quoted one is read as the type that it
/// meets.
void AppendLiteral(std::string& sql, const Parameter& parameter) {
  const CellView& cell = parameter.cell;
  switch (cell.kind) {
    case CellView::Kind::kNull:
      sql += "NULL";
      break;
    case CellView::Kind::kInteger:
      AppendText(sql, std::to_string(cell.integer));
      break;
    case CellView::Kind::kDouble:
      AppendText(sql, DoubleText(cell.number));
      break;
    case CellView::Kind::kText:
      AppendText(sql, cell.bytes);
      break;
    case CellView::Kind::kBinary:
      AppendBytes(sql, cell.bytes);
      break;
  }
}

void AppendParameter(std::string& sql, const Parameter& parameter) {
  // The text of a money value is read by the server's locale, which may have another decimal point.
  const bool is_money = parameter.type == FieldType::kCurrency && !parameter.cell.IsNull();
  if (is_money) sql += "CAST(";
  AppendLiteral(sql, parameter);
  if (is_money) sql += " AS numeric)";
}

[[noreturn]] void ThrowCount(std::size_t places, std::size_t values) {
  throw Error(error_number::kDatabase, "the statement takes " + std::to_string(places) +
                                           " values, not " + std::to_string(values));
}

QVariant TypedDate(std::string_view text) {
  constexpr qsizetype kDateLength = 10;
  const QString iso = QtSqlText(text);
  if (iso.size() <= kDateLength) {
    const QDate date = QDate::fromString(iso, Qt::ISODate);
    return date.isValid() ? QVariant(date) : QVariant(iso);
  }
  const QDateTime timestamp = QDateTime::fromString(iso, Qt::ISODateWithMs);
  return timestamp.isValid() ? QVariant(timestamp) : QVariant(iso);
}

/// Servers want to know what type a Null is of.
QVariant TypedNull(FieldType type) {
  switch (type) {
    case FieldType::kSmallInt:
    case FieldType::kInteger:
    case FieldType::kBigInt:
      return QVariant(QMetaType(QMetaType::LongLong));
    case FieldType::kDouble:
      return QVariant(QMetaType(QMetaType::Double));
    case FieldType::kBoolean:
      return QVariant(QMetaType(QMetaType::Bool));
    case FieldType::kDate:
      return QVariant(QMetaType(QMetaType::QDateTime));
    case FieldType::kBinary:
      return QVariant(QMetaType(QMetaType::QByteArray));
    case FieldType::kCurrency:
    case FieldType::kNumeric:
    case FieldType::kText:
    case FieldType::kMemo:
      break;
  }
  return QVariant(QMetaType(QMetaType::QString));
}

QVariant BoundValue(const Parameter& parameter, BoundValues as) {
  const CellView& cell = parameter.cell;
  const bool typed = as != BoundValues::kTexts;
  switch (cell.kind) {
    case CellView::Kind::kNull:
      return TypedNull(parameter.type);
    case CellView::Kind::kInteger:
      if (!typed) return QString::number(cell.integer);
      if (parameter.type == FieldType::kBoolean) return cell.integer != 0;
      return QVariant(qlonglong{cell.integer});
    case CellView::Kind::kDouble:
      if (!typed) return QString::fromStdString(DoubleText(cell.number));
      return cell.number;
    case CellView::Kind::kText:
      if (as == BoundValues::kTyped && parameter.type == FieldType::kDate) {
        return TypedDate(cell.bytes);
      }
      // An empty QString is no Null, a QString without a text is.
      return cell.bytes.empty() ? QVariant(QString("")) : QVariant(QtSqlText(cell.bytes));
    case CellView::Kind::kBinary:
      return cell.bytes.empty()
                 ? QByteArray("")
                 : QByteArray(cell.bytes.data(), static_cast<qsizetype>(cell.bytes.size()));
  }
  return {};
}

}  // namespace

std::string WithPostgresLiterals(std::string_view sql, std::span<const Parameter> parameters) {
  if (parameters.empty()) return std::string(sql);  // "?" is an operator there, too
  std::string text;
  std::size_t copied = 0;
  std::size_t places = 0;
  SqlTokenizer tokens(sql, {.nested_comments = true});
  for (SqlToken token = tokens.Next(); token.kind != SqlToken::Kind::kEnd; token = tokens.Next()) {
    if (!token.Is('?')) continue;
    if (places < parameters.size()) {
      text += sql.substr(copied, tokens.Position() - 1 - copied);
      AppendParameter(text, parameters[places]);
      copied = tokens.Position();
    }
    ++places;
  }
  if (places != parameters.size()) ThrowCount(places, parameters.size());
  return text += sql.substr(copied);
}

void BindValues(QSqlQuery& query, std::span<const Parameter> parameters, BoundValues as) {
  const auto places = static_cast<std::size_t>(query.boundValues().size());
  if (places != 0 && places != parameters.size()) ThrowCount(places, parameters.size());
  for (const Parameter& parameter : parameters) query.addBindValue(BoundValue(parameter, as));
}

}  // namespace kel
