#include "controls/member_arguments.h"

#include <QDateTime>

#include "common/error.h"
#include "common/names.h"
#include "common/number_text.h"
#include "controls/qt_date.h"

namespace kel {

std::int32_t IndexAt(Indexes indexes, std::size_t position) {
  if (position >= indexes.size()) {
    throw Error(control_error::kWrongNumberOfArguments, "Wrong number of arguments");
  }
  return indexes[position].ToInt32();
}

const Value& ArgumentAt(const Arguments& arguments, std::size_t position, std::string_view name) {
  static const Value kLeftOut = Value::Missing();
  if (position < arguments.positional.size()) return arguments.positional[position];
  for (const auto& [given, value] : arguments.named) {
    if (SameName(given, name)) return value;
  }
  return kLeftOut;
}

std::int32_t NumberWithin(const Value& value, std::int32_t least, std::int32_t most,
                          std::string_view member) {
  const std::int32_t number = value.ToInt32();
  if (number < least || number > most) ThrowInvalidValue(member);
  return number;
}

QString QTextOf(const Value& value) {
  return value.Kind() == ValueKind::kString ? QString::fromStdString(value.String())
                                            : QString::fromStdString(value.ToText());
}

Value ValueOf(const QString& text) { return text.toStdString(); }

std::string ShownText(const QVariant& data) {
  if (data.typeId() == QMetaType::Double) return NumberText(data.toDouble());
  return data.toString().toStdString();
}

Value ValueOf(const QVariant& data) {
  switch (data.typeId()) {
    case QMetaType::UnknownType:
      return {};
    case QMetaType::Bool:
      return data.toBool();
    case QMetaType::Float:
    case QMetaType::Double:
      return data.toDouble();
    case QMetaType::QDate:
    case QMetaType::QDateTime:
      return DateOf(data.toDateTime());
    default:
      break;
  }
  // A text of digits stays a text: it may be a key with zeros before it.
  if (data.typeId() == QMetaType::QString || !data.canConvert<qlonglong>()) {
    return ValueOf(data.toString());
  }
  bool is_number = false;
  const qlonglong number = data.toLongLong(&is_number);
  return is_number ? Value(std::int64_t{number}) : ValueOf(data.toString());
}

void ThrowNoMember(const std::string& called, std::string_view member) {
  throw Error(error_number::kNoSuchMember, called + " has no member " + std::string(member));
}

void ThrowReadOnly(std::string_view member) {
  throw Error(control_error::kPropertyIsReadOnly, std::string(member) + " is read-only");
}

void ThrowInvalidValue(std::string_view member) {
  throw Error(control_error::kInvalidPropertyValue,
              "Invalid property value: " + std::string(member));
}

void ThrowRefused(const std::string& what) {
  throw Error(error_number::kInvalidProcedureCall, what);
}

}  // namespace kel
