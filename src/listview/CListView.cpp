#include "listview/CListView.h"

#include <utility>

#include "common/temp_folder.h"
#include "listview/list_settings.h"
#include "listview/list_windows.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

template <typename Operation>
std::optional<Error> FailureOf(const char* location, Operation operation) {
  try {
    operation();
    return std::nullopt;
  } catch (...) {
    const Error failure = CaughtFailure();
    SharedToolkit().ReportFailure(failure, location);
    return failure;
  }
}

}  // namespace

CListView::CListView() : list_(WatchedList()) {
  last_error_ = FailureOf("DLL.CListView", [] {
    PrepareTempFolder();
    SharedToolkit();  // at its making it empties the folder, too: not later, among a report's files
  });
}

CListView::~CListView() {
  const std::shared_ptr<ListSettings> list = list_.lock();
  if (!list) return;
  list->rdset.reset();
  list->cnn.reset();
}

const std::string& CListView::Caption() const { return CurrentList().caption; }
void CListView::Caption(std::string caption) { CurrentList().caption = std::move(caption); }

const std::string& CListView::ActiveCols() const { return CurrentList().active_cols; }
void CListView::ActiveCols(std::string columns) { CurrentList().active_cols = std::move(columns); }

const Value& CListView::ColFormats() const { return CurrentList().col_formats; }
void CListView::ColFormats(Value formats) { CurrentList().col_formats = std::move(formats); }

Value CListView::ColSums() const { return CurrentList().col_sums; }
void CListView::ColSums(const Value& columns) {
  last_error_ = FailureOf("DLL.ColSums", [&] { CurrentList().col_sums = columns.ToText(); });
}

const std::shared_ptr<Connection>& CListView::Cnn() const { return CurrentList().cnn; }
void CListView::Cnn(std::shared_ptr<Connection> connection) {
  CurrentList().cnn = std::move(connection);
}

const std::shared_ptr<Recordset>& CListView::RDSet() const { return CurrentList().rdset; }
void CListView::RDSet(std::shared_ptr<Recordset> records) {
  CurrentList().rdset = std::move(records);
}

const std::shared_ptr<CPrint>& CListView::PG() const { return CurrentList().pg; }
void CListView::PG(std::shared_ptr<CPrint> print) { CurrentList().pg = std::move(print); }

void CListView::ShowListView(std::int16_t Style, Object* Parent) {
  last_error_ = FailureOf("DLL.ShowListView", [&] {
    const ShowStyle style = Style == 0 ? ShowStyle::kModeless : ShowStyle::kModal;
    CurrentListHost().windows->ShowListView(ColumnAlignment, style, Parent);
  });
}

std::string CListView::SelectedRow() const { return {}; }

}  // namespace kel
