// Vouchers in the books.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/error.h"
#include "common/object.h"
#include "toolkit/CZURDLL.h"
#include "vouchers/books.h"
#include "vouchers/voucher_lines.h"

namespace ledger {

/// Moves vouchers between the books and a form. `head` has a control for each of the fields
/// VoucherId, Number, Date and Type of a voucher. `entry`, which nobody needs to see, has one for
/// each field of Entry; the store writes every line through it.
///
/// Nothing is half-written: what throws, always a kel::Error, has left the books as they were. The
/// toolkit's own messages are kept back, since one that waits for an answer in the middle of a
/// transaction would keep everybody else waiting, too.
class VoucherStore {
 public:
  /// The books outlive the store.
  VoucherStore(Books& books, std::shared_ptr<kel::Object> head, std::shared_ptr<kel::Object> entry);

  /// The number for the next voucher of a type.
  std::string NextNumber(const std::string& type);

  /// Shows the head of a voucher and gives its lines; nothing when no voucher has the number.
  std::optional<std::vector<VoucherLine>> Open(const std::string& number);
  /// From now on Save adds a voucher.
  void StartNew() { opened_.reset(); }
  bool IsNew() const { return !opened_; }

  /// Writes the head and these lines: into the open voucher, or as a new one. Throws NumberTaken
  /// when another voucher has the number, ChangedMeanwhile when the open one is no longer what was
  /// opened.
  void Save(const std::vector<VoucherLine>& lines);
  /// Deletes the open voucher with its lines and goods. Throws ChangedMeanwhile as Save does.
  void Delete();

  class NumberTaken;
  class ChangedMeanwhile;

 private:
  struct Opened {
    std::int64_t voucher_id;
    std::string as_read;
  };

  kel::Connection& Cnn() { return books_.Connection(); }
  std::string Stored(std::int64_t voucher_id);
  std::vector<VoucherLine> LinesOf(std::int64_t voucher_id);
  void RequireUnchanged();
  void RequireFreeNumber(std::int64_t voucher_id);
  void SaveHead(std::int64_t voucher_id);
  void SaveLines(std::int64_t voucher_id, const std::vector<VoucherLine>& lines,
                 std::int64_t next_entry);
  std::int64_t NextId(const std::string& table, const std::string& field);
  void Require(bool succeeded) const;
  kel::Value Found(kel::Value value) const;

  Books& books_;
  std::shared_ptr<kel::Object> head_;
  std::shared_ptr<kel::Object> entry_;
  kel::CZURDLL zur_;
  std::optional<Opened> opened_;
};

class VoucherStore::NumberTaken : public kel::Error {
  using Error::Error;
};

class VoucherStore::ChangedMeanwhile : public kel::Error {
  using Error::Error;
};

}  // namespace ledger
