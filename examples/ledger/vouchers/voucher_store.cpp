#include "vouchers/voucher_store.h"

#include <array>
#include <string_view>
#include <utility>

#include "common/error.h"
#include "data/Recordset.h"
#include "data/sql_quote.h"

namespace ledger {
namespace {

using kel::QuoteValue;

std::string OfVoucher(std::int64_t voucher_id) {
  return "VoucherId = " + std::to_string(voucher_id);
}

kel::Value ControlOf(kel::Object& form, const char* control) {
  const std::array<kel::Value, 1> name = {control};
  return kel::Member(form, "Controls").Get().ToObject().Get(kel::Object::kDefaultMember, name);
}

void PutInto(kel::Object& form, const char* control, const kel::Value& value) {
  ControlOf(form, control).ToObject().Put(kel::Object::kDefaultMember, value);
}

// Each field with its length before it, so that no two different rows make the same text.
void AppendRows(std::string& text, const std::string& sql, kel::Connection& connection) {
  kel::Recordset rows;
  for (rows.Open(sql, connection); !rows.EndOfFile(); rows.MoveNext()) {
    for (int field = 0; field < rows.FieldCount(); ++field) {
      const std::string_view cell = rows.FieldText(field);
      text.append(std::to_string(cell.size())).append(1, ':').append(cell);
    }
  }
}

}  // namespace

VoucherStore::VoucherStore(Books& books, std::shared_ptr<kel::Object> head,
                           std::shared_ptr<kel::Object> entry)
    : books_(books), head_(std::move(head)), entry_(std::move(entry)) {
  zur_.OnError([](std::int32_t&, std::string&, bool& Response) { Response = false; });
}

std::string VoucherStore::NextNumber(const std::string& type) {
  const std::string prefix(NumberPrefix(type));
  // By length first: JRN-100000 comes after JRN-99999.
  const kel::Value last = Found(zur_.GetField(
      Cnn(), "SELECT Number FROM Voucher WHERE Number Like " + QuoteValue(prefix + "%") +
                 " ORDER BY LENGTH(Number) DESC, Number DESC"));
  return ledger::NextNumber(prefix, last.ToText());
}

std::optional<std::vector<VoucherLine>> VoucherStore::Open(const std::string& number) {
  const Transaction reading(books_);  // all that is read is of one moment
  const kel::Value found = Found(
      zur_.GetField(Cnn(), "SELECT VoucherId FROM Voucher WHERE Number = " + QuoteValue(number)));
  if (found.IsEmpty()) return std::nullopt;
  const std::int64_t voucher_id = found.ToInt64();
  std::string as_read = Stored(voucher_id);
  std::vector<VoucherLine> lines = LinesOf(voucher_id);
  Require(zur_.SetSQLFields(
      Cnn(), *head_,
      "SELECT VoucherId, Number, Date, Type FROM Voucher WHERE " + OfVoucher(voucher_id)));
  opened_ = Opened{voucher_id, std::move(as_read)};
  return lines;
}

// The voucher as the books hold it; "" when it is gone.
std::string VoucherStore::Stored(std::int64_t voucher_id) {
  std::string text;
  for (const char* const table : {"Voucher", "Entry"}) {
    AppendRows(
        text,
        std::string("SELECT * FROM ") + table + " WHERE " + OfVoucher(voucher_id) + " ORDER BY 1",
        Cnn());
  }
  return text;
}

std::vector<VoucherLine> VoucherStore::LinesOf(std::int64_t voucher_id) {
  kel::Recordset rows;
  std::vector<VoucherLine> lines;
  for (rows.Open("SELECT e.EntryId, e.AccountId, a.Name, e.Debit, e.Credit, e.Narration"
                 " FROM Entry e JOIN Account a ON a.AccountId = e.AccountId"
                 " WHERE e." +
                     OfVoucher(voucher_id) + " ORDER BY e.Line",
                 Cnn());
       !rows.EndOfFile(); rows.MoveNext()) {
    lines.push_back({rows.FieldValue(0).ToInt64(), rows.FieldValue(1).ToInt64(),
                     std::string(rows.FieldText(2)), zur_.FixFor(rows.FieldValue(3)).ToText(),
                     zur_.FixFor(rows.FieldValue(4)).ToText(), std::string(rows.FieldText(5))});
  }
  return lines;
}

void VoucherStore::Save(const std::vector<VoucherLine>& lines) {
  Transaction changes(books_);
  const std::int64_t next_entry = NextId("Entry", "EntryId");
  const std::int64_t voucher_id = IsNew() ? NextId("Voucher", "VoucherId") : opened_->voucher_id;
  RequireFreeNumber(voucher_id);
  if (!IsNew()) {
    RequireUnchanged();
    Cnn().Execute("DELETE FROM Entry WHERE " + OfVoucher(voucher_id));
  }
  SaveHead(voucher_id);
  SaveLines(voucher_id, lines, next_entry);
  changes.Commit();
}

void VoucherStore::RequireFreeNumber(std::int64_t voucher_id) {
  const kel::Value number = ControlOf(*head_, "Number").ToObject().Get(kel::Object::kDefaultMember);
  const kel::Value other = Found(
      zur_.GetField(Cnn(), "SELECT VoucherId FROM Voucher WHERE Number = " + QuoteValue(number) +
                               " AND NOT " + OfVoucher(voucher_id)));
  if (other.IsEmpty()) return;
  throw NumberTaken(kel::error_number::kInvalidProcedureCall,
                    "There is a voucher of this number already.");
}

void VoucherStore::RequireUnchanged() {
  if (Stored(opened_->voucher_id) == opened_->as_read) return;
  throw ChangedMeanwhile(kel::error_number::kInvalidProcedureCall,
                         "Somebody else has changed this voucher since it was opened. Nothing has "
                         "been saved. Open it again to see it as it is now.");
}

// The party of an invoice is none of this form's business.
void VoucherStore::SaveHead(std::int64_t voucher_id) {
  constexpr const char* kAvoided = ";PartyId;";
  PutInto(*head_, "VoucherId", voucher_id);
  Require(IsNew() ? zur_.Save(Cnn(), *head_, "Voucher", kAvoided)
                  : zur_.Update(Cnn(), *head_, "Voucher", OfVoucher(voucher_id), 0, kAvoided));
}

// A line that was there before keeps its number, and so its place among the entries of a day.
void VoucherStore::SaveLines(std::int64_t voucher_id, const std::vector<VoucherLine>& lines,
                             std::int64_t next_entry) {
  int place = 0;
  for (const VoucherLine& line : lines) {
    PutInto(*entry_, "EntryId", line.entry_id != 0 ? line.entry_id : next_entry++);
    PutInto(*entry_, "VoucherId", voucher_id);
    PutInto(*entry_, "Line", ++place);
    PutInto(*entry_, "AccountId", line.account_id);
    PutInto(*entry_, "Debit", line.debit);
    PutInto(*entry_, "Credit", line.credit);
    PutInto(*entry_, "Narration", line.narration);
    Require(zur_.Save(Cnn(), *entry_, "Entry"));
  }
}

void VoucherStore::Delete() {
  const std::string voucher = OfVoucher(opened_->voucher_id);
  Transaction changes(books_);
  RequireUnchanged();
  // A voucher may have none of these, which the toolkit's Delete takes for a failure.
  Cnn().Execute("DELETE FROM VoucherItem WHERE " + voucher);
  Cnn().Execute("DELETE FROM Entry WHERE " + voucher);
  Require(zur_.Delete(Cnn(), "Voucher", voucher));
  changes.Commit();
  opened_.reset();
}

// Two programs never get the same one: the books are locked, or the server refuses the second.
std::int64_t VoucherStore::NextId(const std::string& table, const std::string& field) {
  const kel::Value largest = Found(zur_.GetMaxValue(Cnn(), table, field));
  return largest.IsEmpty() ? 1 : largest.ToInt64() + 1;
}

void VoucherStore::Require(bool succeeded) const {
  if (!succeeded) throw kel::Error(*zur_.LastError());
}

// An Empty value may be a failure.
kel::Value VoucherStore::Found(kel::Value value) const {
  Require(!zur_.LastError());
  return value;
}

}  // namespace ledger
