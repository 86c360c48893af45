// The record browser.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "common/error.h"
#include "common/object.h"
#include "common/value.h"
#include "data/Connection.h"
#include "data/Recordset.h"
#include "engine/CPrint.h"

namespace kel {

struct ListSettings;

/// A window over the rows of a recordset: scrolling, sorting, filtering, finding, in-cell editing,
/// totals, printing.
///
///     auto books = std::make_shared<Connection>(OpenSqlite("books.db", Access::kReadWrite));
///     auto day_book = std::make_shared<Recordset>();
///     day_book->FetchesInSlices(true);  // the window is there before all rows are
///     day_book->Open("SELECT * FROM DayBook", *books, CursorType::kKeyset, LockType::kOptimistic);
///
///     CListView list;
///     list.Caption("Day Book");
///     list.ActiveCols(";2;4;");  // columns 2 and 4 may be edited
///     list.ColSums(";4;");
///     list.ColFormats(Value::Array{"", "dd/mm/yyyy", "", "", "#,##0.00"});
///     list.RDSet(day_book);
///     list.Cnn(books);
///     list.PG(std::make_shared<CPrint>());
///     list.ShowListView(1);  // until it is closed
///
/// All properties but ColumnAlignment are shared by all objects of the thread: setting one here
/// changes it there. The window works on the shared recordset itself, so its Sort and Filter are
/// the caller's, too. Destroying an object lets go of the shared RDSet and Cnn: keep it while a
/// modeless window is open.
///
/// No operation throws: a failure is kept in LastError and taken down the common error path.
class CListView {
 public:
  /// Empties the temporary folder of earlier work files.
  CListView();
  ~CListView();
  CListView(const CListView&) = delete;
  CListView& operator=(const CListView&) = delete;

  /// The window's title; "List View" when empty.
  const std::string& Caption() const;
  void Caption(std::string caption);
  /// The columns that may be edited, from 0, each between semicolons: ";0;3;". The recordset has to
  /// be open with a lock type that allows changes.
  const std::string& ActiveCols() const;
  void ActiveCols(std::string columns);
  /// An array of format texts (common/format_pattern.h) by column from 0; "" shows values as they
  /// are.
  const Value& ColFormats() const;
  void ColFormats(Value formats);
  /// The columns that the report totals, as ActiveCols. Any value is kept as its text.
  Value ColSums() const;
  void ColSums(const Value& columns);
  /// Kept and handed back; lets the recordset's connection live as long as the list.
  const std::shared_ptr<Connection>& Cnn() const;
  void Cnn(std::shared_ptr<Connection> connection);
  /// The recordset shown.
  const std::shared_ptr<Recordset>& RDSet() const;
  void RDSet(std::shared_ptr<Recordset> records);
  /// Prints and shows the report. Let go when the window closes: set it again before the next
  /// ShowListView.
  const std::shared_ptr<CPrint>& PG() const;
  void PG(std::shared_ptr<CPrint> print);

  /// An array of alignment codes by column from 0: 0 left, 1 right, 2 centre, 3 general. This
  /// object's own. When it is no array, all columns are general.
  Value ColumnAlignment;

  /// Shows the list: beside the caller's windows with `Style` 0, until it is closed with 1.
  /// `Parent` is the form that owns the window. There is one list window per thread, which takes
  /// the new list when it is open. Fails with Error 91 without RDSet, 3704 when that is closed, 5
  /// where no window can be shown.
  void ShowListView(std::int16_t Style = 0, Object* Parent = nullptr);

  /// Reserved: always "".
  std::string SelectedRow() const;

  /// The failure of the last operation; nothing when it succeeded.
  const std::optional<Error>& LastError() const { return last_error_; }

 private:
  std::weak_ptr<ListSettings> list_;  // of the thread that made it
  std::optional<Error> last_error_;
};

}  // namespace kel
