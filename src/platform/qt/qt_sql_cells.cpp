#include "platform/qt/qt_sql_cells.h"

#include <QDate>
#include <QDateTime>
#include <QSqlDriver>
#include <QTime>
#include <QVariant>
#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

#include "platform/qt/qt_sql_native.h"

namespace kel {
namespace {

struct TypeCode {
  int code;
  FieldType type;
};

// Of PostgreSQL's pg_type, by their fixed numbers.
constexpr std::array kPostgresTypes = {
    TypeCode{16, FieldType::kBoolean},   TypeCode{17, FieldType::kBinary},
    TypeCode{20, FieldType::kInteger},   TypeCode{21, FieldType::kSmallInt},
    TypeCode{23, FieldType::kInteger},   TypeCode{26, FieldType::kInteger},
    TypeCode{700, FieldType::kDouble},   TypeCode{701, FieldType::kDouble},
    TypeCode{790, FieldType::kCurrency}, TypeCode{1082, FieldType::kDate},
    TypeCode{1114, FieldType::kDate},    TypeCode{1184, FieldType::kDate},
    TypeCode{1700, FieldType::kNumeric},
};

// Those without "=", or whose "=" means something else: json, xml, point, path, box, polygon,
// circle, refcursor, and arrays of json, xml and point.
constexpr std::array kPostgresWithoutEquals = {114, 142,  600, 602, 603, 604,
                                               718, 1790, 143, 199, 1017};

// SQL_... of sqlext.h; 9, 10 and 11 are the dates of ODBC 2.
constexpr std::array kOdbcTypes = {
    TypeCode{2, FieldType::kNumeric},   TypeCode{3, FieldType::kNumeric},
    TypeCode{4, FieldType::kInteger},   TypeCode{5, FieldType::kSmallInt},
    TypeCode{6, FieldType::kDouble},    TypeCode{7, FieldType::kDouble},
    TypeCode{8, FieldType::kDouble},    TypeCode{9, FieldType::kDate},
    TypeCode{11, FieldType::kDate},     TypeCode{91, FieldType::kDate},
    TypeCode{93, FieldType::kDate},     TypeCode{-155, FieldType::kDate},
    TypeCode{-1, FieldType::kMemo},     TypeCode{-10, FieldType::kMemo},
    TypeCode{-2, FieldType::kBinary},   TypeCode{-3, FieldType::kBinary},
    TypeCode{-4, FieldType::kBinary},   TypeCode{-5, FieldType::kInteger},
    TypeCode{-6, FieldType::kSmallInt}, TypeCode{-7, FieldType::kBoolean},
};

constexpr int kOdbcXml = -152;  // SQL_SS_XML
constexpr std::array kMySqlTypes = {TypeCode{0, FieldType::kNumeric},
                                    TypeCode{246, FieldType::kNumeric}};

std::optional<FieldType> FindType(std::span<const TypeCode> types, int code) {
  const auto found = std::find_if(types.begin(), types.end(),
                                  [&](const TypeCode& type) { return type.code == code; });
  return found == types.end() ? std::nullopt : std::optional(found->type);
}

FieldType TypeOfMeta(QMetaType type) {
  switch (type.id()) {
    case QMetaType::Bool:
      return FieldType::kBoolean;
    case QMetaType::Short:
    case QMetaType::UShort:
      return FieldType::kSmallInt;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
      return FieldType::kInteger;
    case QMetaType::Double:
    case QMetaType::Float:
      return FieldType::kDouble;
    case QMetaType::QDate:
    case QMetaType::QDateTime:
      return FieldType::kDate;
    case QMetaType::QByteArray:
      return FieldType::kBinary;
    default:
      return FieldType::kText;
  }
}

template <typename Number>
std::optional<Number> ReadNumber(std::string_view text) {
  Number number{};
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (code != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// The shortest text that states a decimal: "1250.00" is "1250".
void ShortenDecimal(std::string& text) {
  if (text.find_first_not_of("-0123456789.") != std::string::npos) return;  // NaN, 1E+2
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return;
  text.resize(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  // Some servers leave out the zero before the point.
  const std::size_t first = !text.empty() && text[0] == '-' ? 1 : 0;
  if (point == first) text.insert(first, 1, '0');
  if (text == "-0") text = "0";
}

/// The amount in a money text as the server's locale writes it: "-$1,250.50", "1.250,50 EUR". The
/// last sign is the decimal point unless three digits stand behind it.
std::string MoneyDecimal(std::string_view text) {
  const std::size_t last = text.find_last_of("0123456789");
  const std::size_t sign = text.find_last_of(".,", last);
  const bool has_decimals = sign != std::string_view::npos && last - sign != 3;
  std::string decimal(text.find_first_of("-(") == std::string_view::npos ? "" : "-");
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] >= '0' && text[i] <= '9') decimal += text[i];
    if (i == sign && has_decimals) decimal += '.';
  }
  ShortenDecimal(decimal);
  return decimal;
}

constexpr std::size_t kDateLength = 10;    // 2026-03-31
constexpr std::size_t kSecondLength = 19;  // 2026-03-31 14:05:09

/// A time that is midnight is the day alone. The offset of a time zone goes: what is left is the
/// session's local time, as the server takes it back.
void ShortenTimestamp(std::string& text) {
  if (text.size() < kSecondLength || text[kDateLength] != ' ' || text.ends_with("BC")) return;
  text.resize(std::min(text.find_first_of("+-", kSecondLength), text.size()));
  if (text.ends_with(" 00:00:00")) text.resize(kDateLength);
}

int HexDigit(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  return c - 'a' + 10;
}

/// Binary as PostgreSQL writes it: \x and hex digits, or "\\" and "\ooo" for single bytes.
void DecodeBytes(std::string_view text, std::string& bytes) {
  bytes.clear();
  if (text.starts_with("\\x")) {
    for (std::size_t i = 2; i + 1 < text.size(); i += 2) {
      bytes += static_cast<char>(HexDigit(text[i]) * 16 + HexDigit(text[i + 1]));
    }
    return;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] != '\\') {
      bytes += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 +
                                 (text[i + 3] - '0'));
      i += 3;
    } else {
      bytes += text[i];
      if (text[i] == '\\') ++i;
    }
  }
}

/// The cell of a text that the database gave for a value of `type`. A text that is no such value
/// stays a text.
CellView TextCell(std::string& text, FieldType type) {
  switch (type) {
    case FieldType::kSmallInt:
    case FieldType::kInteger:
    case FieldType::kBigInt:
      if (const auto number = ReadNumber<std::int64_t>(text)) return CellView::Integer(*number);
      break;
    case FieldType::kDouble:
      if (const auto number = ReadNumber<double>(text)) return CellView::Double(*number);
      break;
    case FieldType::kBoolean:
      if (text == "t" || text == "1") return CellView::Integer(1);
      if (text == "f" || text == "0") return CellView::Integer(0);
      break;
    case FieldType::kNumeric:
      ShortenDecimal(text);
      break;
    case FieldType::kCurrency:
      text = MoneyDecimal(text);
      break;
    case FieldType::kDate:
      ShortenTimestamp(text);
      break;
    case FieldType::kText:
    case FieldType::kMemo:
    case FieldType::kBinary:
      break;
  }
  return CellView::Text(text);
}

CellView PostgresCell(std::string_view server_text, FieldType type, std::string& text) {
  if (type == FieldType::kBinary) {
    DecodeBytes(server_text, text);
    return {CellView::Kind::kBinary, 0, 0, text};
  }
  text.assign(server_text);
  return TextCell(text, type);
}

std::string TimeText(QTime time) {
  return time.toString(time.msec() == 0 ? "HH:mm:ss" : "HH:mm:ss.zzz").toStdString();
}

std::string TimestampText(const QDateTime& timestamp) {
  std::string day = timestamp.date().toString(Qt::ISODate).toStdString();
  if (timestamp.time() == QTime(0, 0)) return day;
  std::string text = day + " " + TimeText(timestamp.time());
  if (timestamp.time().msec() != 0) text.resize(text.find_last_not_of('0') + 1);
  return text;
}

CellView VariantCell(const QVariant& value, FieldType type, std::string& text) {
  if (value.isNull()) return {};
  switch (value.typeId()) {
    case QMetaType::Bool:
      return CellView::Integer(value.toBool() ? 1 : 0);
    case QMetaType::ULongLong:
      if (value.toULongLong() > std::numeric_limits<std::int64_t>::max()) break;
      [[fallthrough]];
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
      return CellView::Integer(value.toLongLong());
    case QMetaType::Float:
    case QMetaType::Double:
      return CellView::Double(value.toDouble());
    case QMetaType::QDate:
      text = value.toDate().toString(Qt::ISODate).toStdString();
      return CellView::Text(text);
    case QMetaType::QTime:
      text = TimeText(value.toTime());
      return CellView::Text(text);
    case QMetaType::QDateTime:
      text = TimestampText(value.toDateTime());
      return CellView::Text(text);
    case QMetaType::QByteArray:
      text = value.toByteArray().toStdString();
      return {CellView::Kind::kBinary, 0, 0, text};
    default:
      break;
  }
  text = value.toString().toStdString();
  return TextCell(text, type);
}

/// ODBC gives decimals as texts under one policy, and doubles in full under the other. Other
/// drivers know a double by itself, and SQLite's loses its place when the policy changes.
void SetPrecision(QSqlQuery& query, FieldType type) {
  query.setNumericalPrecisionPolicy(type == FieldType::kDouble ? QSql::LowPrecisionDouble
                                                               : QSql::HighPrecision);
}

}  // namespace

QtTypeCodes TypeCodesOf(const QSqlQuery& query) {
  const QString driver = query.driver()->metaObject()->className();
  if (driver == "QPSQLDriver") return QtTypeCodes::kPostgres;
  if (driver == "QODBCDriver") return QtTypeCodes::kOdbc;
  if (driver == "QMYSQLDriver") return QtTypeCodes::kMySql;
  return QtTypeCodes::kQtOnly;
}

ColumnInfo QtColumn(const QSqlField& field, QtTypeCodes codes) {
  ColumnInfo column;
  column.name = field.name().toStdString();
  // Over ODBC what stood in memory behind the name's end may follow it.
  column.table = field.tableName().section(QChar(u'\0'), 0, 0).toStdString();
  const int code = field.typeID();
  switch (codes) {
    case QtTypeCodes::kPostgres:
      column.type = FindType(kPostgresTypes, code).value_or(FieldType::kText);
      column.comparable = std::find(kPostgresWithoutEquals.begin(), kPostgresWithoutEquals.end(),
                                    code) == kPostgresWithoutEquals.end();
      break;
    case QtTypeCodes::kOdbc:
      column.type = FindType(kOdbcTypes, code).value_or(FieldType::kText);
      column.comparable = code != kOdbcXml;
      break;
    case QtTypeCodes::kMySql:
      column.type = FindType(kMySqlTypes, code).value_or(TypeOfMeta(field.metaType()));
      break;
    case QtTypeCodes::kQtOnly:
      column.type = TypeOfMeta(field.metaType());
      break;
  }
  return column;
}

void QtRow::Read(QSqlQuery& query, const std::vector<ColumnInfo>& columns, QtTypeCodes codes) {
  cells_.resize(columns.size());
  texts_.resize(columns.size());
  const std::optional<PostgresResult> postgres = PostgresResult::Of(query);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const int column = static_cast<int>(i);
    const FieldType type = columns[i].type;
    if (postgres) {
      const std::optional<std::string_view> text = postgres->Cell(column);
      cells_[i] = text ? PostgresCell(*text, type, texts_[i]) : CellView{};
    } else {
      if (codes == QtTypeCodes::kOdbc) SetPrecision(query, type);
      cells_[i] = VariantCell(query.value(column), type, texts_[i]);
    }
  }
}

}  // namespace kel
