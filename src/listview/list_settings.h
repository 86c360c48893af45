// What every CListView object of a thread shares.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "common/value.h"
#include "data/Connection.h"
#include "data/Recordset.h"
#include "engine/CPrint.h"

namespace kel {

/// One set per thread, deliberately: a property set on one CListView object changes for all of
/// them, and the list window reads the same set.
struct ListSettings {
  std::string caption;
  std::string active_cols;  // a column list, see NamesColumn
  Value col_formats;        // an array of format texts by column
  std::string col_sums;     // a column list
  std::shared_ptr<Connection> cnn;
  std::shared_ptr<Recordset> rdset;
  std::shared_ptr<CPrint> pg;
};

/// The set of the calling thread.
ListSettings& CurrentList();
/// The same for what may outlive the thread's own objects, as a static object does.
std::weak_ptr<ListSettings> WatchedList();

/// Whether a column list (";0;3;", as the window makes it also ";0;;3;") names a column: whether it
/// has ";" + column + ";".
bool NamesColumn(std::string_view list, int column);
/// Puts ";" + column + ";" at the end of a list that does not name the column.
void AddColumn(std::string& list, int column);
/// Takes every ";" + column + ";" out of a list.
void RemoveColumn(std::string& list, int column);

}  // namespace kel
