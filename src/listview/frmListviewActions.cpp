// What the menu, the tool bar, the keys and the mouse do in the list window.
#include <QPointer>
#include <utility>

#include "controls/widget_object.h"
#include "listview/frmListview.h"
#include "listview/frmListviewGrid.h"
#include "listview/frmOption.h"
#include "listview/list_windows.h"
#include "toolkit/CZURDLL.h"
#include "toolkit/frmAbout.h"

namespace kel {
namespace {

constexpr const char* kAboutTag = "LISTVIEW";
constexpr const char* kRecordsTitle = "Records";
constexpr std::int32_t kRecordsTime = 1000;  // milliseconds

}  // namespace

// The wait windows of an action let events through: another action has to wait for its end. No
// failure may leave the window's event handling.
void frmListview::Act(const std::function<void()>& action) noexcept {
  if (acting_ || scanning_) return;
  const QPointer<frmListview> self(this);
  acting_ = true;
  loader_.stop();
  try {
    grid_->Table().Cells().Finish();
    action();
  } catch (...) {
    ShowError(CaughtFailure(), windowTitle().toStdString());
  }
  if (!self) return;
  acting_ = false;
  follower_.TellNow();
  TakeOtherColumns();
  ContinueLoading();
}

void frmListview::Perform(ListCommand command) {
  ListTable& table = grid_->Table();
  const ColumnSelection& selected = table.Selection();
  switch (command) {
    case ListCommand::kAscendingOrder:
      return model_.SortAscending(selected.First(), selected.Last(), table.CurrentColumn());
    case ListCommand::kDescendingOrder:
      return model_.SortDescending(selected.First(), selected.Last(), table.CurrentColumn());
    case ListCommand::kMoveFirst:
      return model_.MoveFirst();
    case ListCommand::kMoveLast:
      return model_.MoveLast();
    case ListCommand::kTotalRecords:
      return ShowTotalRecords();
    case ListCommand::kFind:
      return OpenOption(OptionMode::kFind);
    case ListCommand::kFilter:
      return OpenOption(OptionMode::kFilter);
    case ListCommand::kRefresh:
      model_.Refresh();
      ShowCaption();
      return grid_->ColumnsPrepared();
    case ListCommand::kAlignGrid:
      return grid_->AlignColumns();
    case ListCommand::kPrintColumnTotal:
      return model_.TotalColumn(table.CurrentColumn(), menu_->ActionOf(command).isChecked());
    case ListCommand::kPrint:
      return model_.Print();
    case ListCommand::kPrintPreview:
      return model_.PrintPreview();
    case ListCommand::kHideColumn:
      return grid_->HideColumn();
    case ListCommand::kAbout:
      return frmAbout::Show(QLatin1String(kAboutTag), this);
  }
}

void frmListview::GoToRow(std::int64_t row) {
  if (row == grid_->Rows().CurrentRow()) return;
  Act([&] {
    if (model_.Records() != nullptr) model_.Records()->AbsolutePosition(row + 1);
  });
}

void frmListview::ClickHeading() {
  Act([this] {
    const ListTable& table = grid_->Table();
    const ColumnSelection& selected = table.Selection();
    model_.HeadingClick(selected.First(), selected.Last(), table.CurrentColumn());
  });
  grid_->ColumnsPrepared();  // the click has turned the arrow, whatever came of it
}

void frmListview::Enter(int column, const QString& typed) {
  const bool before = std::exchange(acting_, true);
  try {
    model_.Enter(column, typed.toStdString());
  } catch (...) {
    TellLater(CaughtFailure());
  }
  acting_ = before;
}

// A failure in the middle of an edit or of loading is told when that is over.
void frmListview::TellLater(const Error& failure) {
  untold_ = failure;
  QTimer::singleShot(0, this, &frmListview::TellUntold);
}

void frmListview::TellUntold() {
  if (!untold_) return;
  const Error failure = *std::exchange(untold_, std::nullopt);
  ShowError(failure, windowTitle().toStdString());
}

void frmListview::OpenOption(OptionMode mode) {
  if (!option_) {
    option_ = std::make_unique<frmOption>(model_, this);
    option_->RunThrough([this](const std::function<void()>& action) { Act(action); });
    connect(option_.get(), &frmOption::Filtered, this, &frmListview::ShowCaption);
    connect(option_.get(), &frmOption::Scanning, this, &frmListview::Scan);
  }
  option_->Open(mode);
}

void frmListview::Scan(bool scanning) {
  scanning_ = scanning;
  grid_->ShowRecords(!scanning);
  if (scanning) return loader_.stop();
  FollowRecords({true, true, true, true});
  ContinueLoading();
}

void frmListview::ShowTotalRecords() {
  SharedToolkit().MsgBox(model_.TotalRecordsText(), msgOK, kRecordsTitle, msgInformation, true,
                         kRecordsTime, WidgetObject(grid_->Table()).get());
}

void frmListview::ShowMenu(int column, QPoint place) {
  if (acting_ || scanning_) return;
  grid_->Table().Cells().Finish();
  const bool on_column = column >= 0 && grid_->Rows().Fits();
  menu_->Open(
      {on_column, on_column && model_.MayTotal(column), on_column && model_.IsTotalled(column)},
      place);
}

}  // namespace kel
