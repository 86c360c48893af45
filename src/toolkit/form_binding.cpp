// CZURDLL: records between forms and tables. A field and a control belong together when the
// control's name is the field's.
#include "common/object.h"
#include "data/Recordset.h"
#include "data/folded_text.h"
#include "toolkit/CZURDLL_p.h"
#include "toolkit/control_members.h"
#include "toolkit/form_controls.h"

namespace kel {
namespace {

constexpr int kNoRecords = 3021;

void TakeFields(Recordset& record, Object& form, const AvoidList& avoided) {
  FormControls controls(form);
  for (int field = 0; field < record.FieldCount(); ++field) {
    const ColumnInfo& column = record.Field(field);
    if (avoided.Names(field, column.name)) continue;
    const Value::ObjectPtr control = controls.Named(column.name);
    record.SetFieldValue(field, ValueForField(*control, column.type));
  }
}

bool IsAvoided(Object& control, const Value::Array& names) {
  if (names.empty()) return false;
  const std::string name = Folded(MemberText(control, "Name"));
  return std::any_of(names.begin(), names.end(), [&](const Value& avoided) {
    return avoided.Kind() == ValueKind::kString && Folded(avoided.String()) == name;
  });
}

}  // namespace

bool CZURDLL::Save(Connection& Cnn, Object& Frm, const std::string& Table,
                   const std::string& AvoidFields) {
  return Guarded("DLL.Save", false, [&] {
    const Hourglass hourglass;
    SharedRecordset record(recordset_);
    record->Open("SELECT * FROM " + Table + " WHERE 1=2", Cnn, CursorType::kKeyset,
                 LockType::kOptimistic);
    record->AddNew();
    TakeFields(*record, Frm, AvoidList(AvoidFields));
    record->Update();
    record.CloseAndRelease();
    return true;
  });
}

bool CZURDLL::Update(Connection& Cnn, Object& Frm, const std::string& Table,
                     const std::string& Pattern, std::int32_t BookMark,
                     const std::string& AvoidFields) {
  return Guarded("DLL.Update", false, [&] {
    const Hourglass hourglass;
    std::string source = Table;
    if (!Pattern.empty()) {
      source += " WHERE " + Pattern;
    } else if (BookMark != 0) {
      if (!recordset_) throw Error(error_number::kObjectNotSet, "Object variable not set");
      recordset_->Move(BookMark);
    }
    SharedRecordset record(recordset_);
    record->MaxRecords(kFirstRowOnly);
    record->Open("SELECT * FROM " + source, Cnn, CursorType::kKeyset, LockType::kOptimistic);
    TakeFields(*record, Frm, AvoidList(AvoidFields));
    record->Update();
    record.CloseAndRelease();
    return true;
  });
}

bool CZURDLL::Delete(Connection& Cnn, const std::string& Table, const std::string& Pattern) {
  return Guarded("DLL.Delete", false, [&] {
    const Hourglass hourglass;
    const std::int64_t deleted = Cnn.Execute("DELETE FROM " + Table + " WHERE " + Pattern);
    if (deleted == 0) throw Error(kNoRecords, "No such records found.");
    return true;
  });
}

bool CZURDLL::SetFields(Connection& Cnn, Object& Frm, const std::string& Table,
                        const std::string& Pattern) {
  return Guarded("DLL.SetFields", false, [&] {
    return ShowRecord(Cnn, Frm, "SELECT * FROM " + Table + " WHERE " + Pattern);
  });
}

bool CZURDLL::SetSQLFields(Connection& Cnn, Object& Frm, const std::string& SQL) {
  return Guarded("DLL.SetSQLFields", false, [&] { return ShowRecord(Cnn, Frm, SQL); });
}

bool CZURDLL::ShowRecord(Connection& connection, Object& form, const std::string& sql) {
  const Hourglass hourglass;
  SharedRecordset record(recordset_);
  record->MaxRecords(kFirstRowOnly);
  record->Open(sql, connection, CursorType::kKeyset, LockType::kOptimistic);
  if (record->RecordCount() != 0) {
    FormControls controls(form);
    for (int field = 0; field < record->FieldCount(); ++field) {
      const Value::ObjectPtr control = controls.Named(record->Field(field).name);
      ShowFieldValue(*control, record->FieldValue(field));
    }
  }
  record.CloseAndRelease();
  return true;
}

void CZURDLL::Clear(Object& Frm, const Value::Array& AvoidCtrls) {
  last_error_.reset();
  const Hourglass hourglass;
  Quietly([&] {
    FormControls controls(Frm);
    const std::int32_t count = controls.Count();
    for (std::int32_t i = 0; i < count; ++i) {
      Quietly([&] {
        const Value::ObjectPtr control = controls.At(i);
        if (!IsKind(*control, "Label") && !IsAvoided(*control, AvoidCtrls)) EmptyControl(*control);
      });
    }
  });
}

void CZURDLL::ClearCtrls(const Value::Array& Ctrls) {
  Guarded("DLL.ClearCtrls", [&] {
    const Hourglass hourglass;
    for (const Value& control : Ctrls) EmptyControl(control.ToObject());
  });
}

}  // namespace kel
