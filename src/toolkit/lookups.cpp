// CZURDLL: single values out of a database.
#include "common/numeric_value.h"
#include "data/Recordset.h"
#include "toolkit/CZURDLL_p.h"

namespace kel {
namespace {

// A condition that every value meets.
std::string AnyValueOf(const std::string& field) { return field + " Like('%')"; }

std::string Further(const Value& criteria) {
  return criteria.IsMissing() ? "" : " AND " + criteria.ToText();
}

// Column `index` of the first row; `without_rows` when there is none.
Value FirstValue(CZURDLL& toolkit, const Recordset& rows, int index, const Value& without_rows) {
  return rows.RecordCount() == 0 ? without_rows : toolkit.CheckNull(rows.FieldValue(index));
}

}  // namespace

Value CZURDLL::GetField(Connection& Cnn, const std::string& SQL, std::int16_t Fld) {
  return Guarded("DLL.GetField", Value(), [&] {
    SharedRecordset rows(recordset_);
    rows->MaxRecords(kFirstRowOnly);
    rows->Open(SQL, Cnn, CursorType::kKeyset, LockType::kReadOnly);
    Value found = FirstValue(*this, *rows, Fld, Value());
    rows.CloseAndRelease();
    return found;
  });
}

Value CZURDLL::CheckNull(Value& Str) {
  if (Str.IsNull()) Str = Value();
  return Str;
}

Value CZURDLL::CheckNull(Value&& Str) { return CheckNull(Str); }

Value CZURDLL::GetMaxValue(Connection& Cnn, const std::string& Table, const std::string& Field,
                           const std::string& Pattern) {
  return Guarded("DLL.GetMaxValue", Value(), [&] {
    const std::string condition = Pattern.empty() ? AnyValueOf(Field) : Pattern;
    SharedRecordset rows(recordset_);
    rows->MaxRecords(kFirstRowOnly);
    rows->Open("SELECT MAX(" + Field + ") FROM  " + Table + " WHERE " + condition, Cnn,
               CursorType::kKeyset, LockType::kOptimistic);
    Value largest = FirstValue(*this, *rows, 0, 0);
    rows.CloseAndRelease();
    return largest;
  });
}

std::int32_t CZURDLL::GetAccountCode(Connection& Cnn, const std::string& AcctName,
                                     const Value& Criteria) {
  return Guarded("DLL.GetAccountCode", std::int32_t{0}, [&] {
    Value code = GetField(
        Cnn, "SELECT AccCode FROM  Ledger WHERE AccName='" + AcctName + "'" + Further(Criteria));
    return Value(kel::ExVal(code)).ToInt32();
  });
}

std::string CZURDLL::GetAccountName(Connection& Cnn, std::int32_t AcctCode, const Value& Criteria) {
  return Guarded("DLL.GetAccountName", std::string(), [&] {
    return GetField(Cnn, "SELECT AccName FROM  Ledger WHERE AccCode= " + std::to_string(AcctCode) +
                             Further(Criteria))
        .ToText();
  });
}

}  // namespace kel
