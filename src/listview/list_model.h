// The list window without its window.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/value.h"
#include "data/Recordset.h"
#include "listview/list_columns.h"
#include "listview/list_settings.h"

namespace kel {

/// The caption of a list window that was given none.
inline constexpr std::string_view kDefaultListCaption = "List View";

/// Where a search begins and which way it goes; the order of the option buttons.
enum class FindOption : int { kFirst = 0, kNext = 1, kPrevious = 2, kLast = 3 };

/// What the list window shows and does, over the recordset of the shared list settings. The
/// operations are those of its menu; they throw Error when the recordset refuses, or is gone (91),
/// and then nothing has changed. Those that need all rows (sorting, filtering, finding, the last
/// record, possible values, printing) first read the rows that are still missing, under a wait
/// window; when its Stop is pressed they return without doing anything.
///
/// The recordset that was bound is kept until the next Bind or the model's end, even when the
/// settings have given it up.
class ListModel {
 public:
  explicit ListModel(ListSettings& settings = CurrentList()) : settings_(settings) {}
  ListModel(const ListModel&) = delete;
  ListModel& operator=(const ListModel&) = delete;

  /// Window caption: that of the settings, "List View" if that is empty, which it is no longer
  /// then.
  void LoadCaption();
  const std::string& Caption() const noexcept { return caption_; }

  /// Binds the grid to the settings' recordset and prepares its columns as ShowListView does.
  /// Throws Error 91 when there is no recordset, 3704 when it is closed.
  void Bind(const Value& column_alignment);
  /// The bound recordset; null before Bind.
  Recordset* Records() const noexcept { return records_.get(); }
  /// One per field. Widths and visibility are the window's to keep.
  std::vector<ListColumn>& Columns() noexcept { return columns_; }
  const std::vector<ListColumn>& Columns() const noexcept { return columns_; }

  /// How many rows there are to be seen by now; all of them unless IsLoading.
  std::int64_t Rows() const;
  /// Whether rows are still to come.
  bool IsLoading() const;
  /// Reads further rows for about that long. Throws Error when the database fails; the rows read
  /// before stay, and IsLoading is false from then on.
  void Load(std::chrono::milliseconds time);
  /// Other rows are there than those whose reading failed.
  void LoadAnew() noexcept { load_failed_ = false; }
  /// A cell of the row that is seen at `row`, from 0, as the grid shows it: appended to `text`.
  void AppendText(std::int64_t row, int column, std::string& text) const;

  // Edits.

  /// What is to be edited of a cell of the current record: the value without its format.
  std::string EntryText(int column) const;
  /// Puts what was typed into the current record and writes that to the database. An empty text is
  /// Null in a field that holds no text. Throws Error when it is no value of the field's type or
  /// the database refuses it, and 5 when reading on was stopped; the old value stays.
  void Enter(int column, std::string_view typed);

  // The menu.

  /// Sorts by the columns from the first to the last selected one, or by the current one where they
  /// are -1.
  void SortAscending(int first_selected, int last_selected, int current);
  void SortDescending(int first_selected, int last_selected, int current);
  /// A click on a heading: ascending and descending in turn, beginning with ascending.
  void HeadingClick(int first_selected, int last_selected, int current);
  void MoveFirst();
  void MoveLast();
  /// "Total number of Records : 1250"; while rows are still to come how many there are by now.
  std::string TotalRecordsText() const;
  /// Drops filter and sort, runs the statement again, and prepares caption and columns anew.
  void Refresh();
  /// Whether the total of a column can be asked for: of fields of type 2, 3 and 5.
  bool MayTotal(int column) const;
  bool IsTotalled(int column) const { return NamesColumn(settings_.col_sums, column); }
  void TotalColumn(int column, bool total);
  /// Writes the list report, then lets PG ask for pages and print, or show them.
  void Print();
  void PrintPreview();

  // The condition dialog.

  /// Sets the filter and puts it into the caption. False when reading on was stopped.
  bool ApplyFilter(const std::string& condition);
  enum class Found { kYes, kNo, kStopped };
  /// Searches. After kNo tell the user, then LeaveEnd. On failure the record from before is the
  /// current one again.
  Found Find(const std::string& condition, FindOption option);
  /// Goes to the first record after a search that ran off the end; one that ran off the beginning
  /// stays there, deliberately.
  void LeaveEnd();
  /// Sorts by a field and hands out its different values, in order and without regard to case;
  /// Nulls, and empty texts before the first value, are left out. `progress` is told how many rows
  /// of how many are done, every few thousand. Ends on the first record. False when reading on was
  /// stopped.
  bool PossibleValues(int field, const std::function<void(std::string)>& add,
                      const std::function<void(std::int64_t, std::int64_t)>& progress);

 private:
  Recordset& Required() const;
  bool LoadAll();
  void Sort(int first_selected, int last_selected, int current, std::string_view direction);
  void SortBy(Recordset& records, const std::string& sort) const;
  std::shared_ptr<CPrint> WriteReport();

  ListSettings& settings_;
  std::shared_ptr<Recordset> records_;
  std::shared_ptr<Connection> connection_;  // which the recordset may need
  std::vector<ListColumn> columns_;
  std::string caption_;
  bool load_failed_ = false;
  std::string tag_;  // the grid's Tag: "DESC" when the next heading click sorts descending
};

}  // namespace kel
