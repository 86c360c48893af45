#include "keldll/browse_command.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/error.h"
#include "engine/CPrint.h"
#include "engine/report_windows.h"
#include "keldll/browse_options.h"
#include "keldll/browse_table.h"
#include "keldll/screen.h"
#include "listview/CListView.h"
#include "platform/qt/qt_host.h"

namespace kel::command {
namespace {

// ";0;;3;", as the list takes columns.
std::string ColumnList(const std::vector<std::int32_t>& columns) {
  std::string list;
  for (const std::int32_t column : columns) list += ';' + std::to_string(column) + ';';
  return list;
}

Value FormatArray(const std::map<std::int32_t, std::string>& formats) {
  Value::Array array;
  for (const auto& [column, format] : formats) {
    array.resize(static_cast<std::size_t>(column), Value::Missing());
    array.emplace_back(format);
  }
  return array;
}

Value AlignmentArray(const std::vector<GridAlignment>& alignments) {
  // Without an array all columns are general.
  if (alignments.empty()) return {};
  return Value::Array(alignments.begin(), alignments.end());
}

void RequireSuccess(const std::optional<Error>& failure, const std::string& what) {
  if (failure) throw Error(failure->Number(), what + ": " + failure->Description());
}

void ShowList(const BrowseOptions& options, BrowseTable table) {
  CListView list;
  RequireSuccess(list.LastError(), "cannot begin the list");
  auto print = std::make_shared<CPrint>();
  RequireSuccess(print->LastError(), "cannot begin the list");

  list.Caption(table.caption);
  list.ActiveCols(ColumnList(options.active));
  list.ColSums(ColumnList(options.sums));
  list.ColFormats(FormatArray(options.formats));
  list.ColumnAlignment = AlignmentArray(table.alignments);
  list.RDSet(std::move(table.records));
  list.Cnn(std::move(table.connection));
  list.PG(std::move(print));
  TellFailuresInWindows();
  list.ShowListView(static_cast<std::int16_t>(ShowStyle::kModal));
  RequireSuccess(list.LastError(), "cannot show " + options.source.name);
}

}  // namespace

void RunBrowse(std::span<const std::string> words) {
  const BrowseOptions options = ReadBrowseOptions(words);
  DropQtWarnings();
  RequireScreen("browse");
  InstallQtHost();
  TellFailuresAtTheEnd();
  ShowList(options, OpenTable(options));
}

}  // namespace kel::command
