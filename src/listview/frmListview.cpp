#include "listview/frmListview.h"

#include <QCloseEvent>
#include <QLocale>
#include <QVBoxLayout>
#include <utility>

#include "controls/icons.h"
#include "listview/frmListviewGrid.h"
#include "listview/frmListviewPlacement.h"
#include "listview/frmListviewToolbar.h"
#include "listview/frmOption.h"
#include "listview/list_settings.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

using std::chrono::milliseconds;

constexpr QSize kDefaultSize(800, 500);
constexpr const char* kLocation = "DLL.ShowListView";

constexpr milliseconds kSlice{10};
// The first screen is waited for no longer than a blink.
constexpr int kSlicesAtFirst = 20;
constexpr std::int64_t kRowsAtFirst = 100;

// Settings that cannot be read or written keep nobody from reading a list.
void LogFailure() noexcept {
  SharedToolkit().ERRORLOG(Value(kLocation), CaughtFailure().Description(), false);
}

QString Counted(std::int64_t number) { return QLocale(QLocale::English).toString(qint64{number}); }

}  // namespace

frmListview::frmListview(QWidget* parent) : QWidget(parent, Qt::Window) {
  setObjectName(QStringLiteral("frmListview"));
  setWindowIcon(Icon(QStringLiteral("find")));
  setAttribute(Qt::WA_QuitOnClose, false);
  resize(kDefaultSize);
  MakeControls();
  ConnectControls();
  model_.LoadCaption();
  try {
    LoadPlacement(*this);
  } catch (...) {
    LogFailure();
  }
  ShowCaption();
}

frmListview::~frmListview() { follower_.Follow(nullptr); }

void frmListview::MakeControls() {
  menu_ = new RecordsMenu(this);
  toolbar_ = new ListToolbar(*menu_, this);
  grid_ = new ListGrid(model_, this);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(toolbar_);
  column->addWidget(grid_, 1);
  grid_->setFocus();
}

void frmListview::ConnectControls() {
  connect(menu_, &RecordsMenu::Chosen, this,
          [this](ListCommand command) { Act([&] { Perform(command); }); });
  ListTable& table = grid_->Table();
  connect(&table, &ListTable::RowAsked, this, &frmListview::GoToRow);
  connect(&table, &ListTable::FirstAsked, this, [this] { Act([this] { model_.MoveFirst(); }); });
  connect(&table, &ListTable::LastAsked, this, [this] { Act([this] { model_.MoveLast(); }); });
  connect(&table, &ListTable::CloseAsked, this, &QWidget::close);
  connect(&table, &ListTable::HeadingClicked, this, &frmListview::ClickHeading);
  connect(&table, &ListTable::Released, this,
          [this](Qt::MouseButton button, int column, QPoint place) {
            if (button == Qt::RightButton) ShowMenu(column, place);
          });
  connect(&table, &ListTable::MenuAsked, this, [this, &table] {
    ShowMenu(table.CurrentColumn(), table.viewport()->mapToGlobal(table.CurrentCell().center()));
  });
  connect(&table.Cells(), &ListCells::Entered, this, &frmListview::Enter);
  connect(&table.Cells(), &ListCells::Failed, this, &frmListview::TellLater);
  connect(&follower_, &RecordsetFollower::Happened, this, &frmListview::FollowRecords);
  connect(&loader_, &QTimer::timeout, this, &frmListview::LoadSlice);
}

// The condition dialog stays open while it is at work.
bool frmListview::IsBusy() { return acting_ || (option_ && !option_->close()); }

void frmListview::Bind(const Value& column_alignment) {
  if (IsBusy()) {
    throw Error(error_number::kInvalidProcedureCall, "the list window is busy");
  }
  column_alignment_ = column_alignment;
  BindColumns();
  loaded_ = true;
}

void frmListview::BindColumns() {
  grid_->Table().Cells().Finish();
  follower_.Follow(nullptr);
  try {
    model_.Bind(column_alignment_);
  } catch (...) {
    follower_.Follow(model_.Records());
    throw;
  }
  model_.LoadCaption();
  LoadFirstScreen();
  follower_.Follow(model_.Records());
  grid_->Rebuild();
  if (option_) option_->LoadFields();
  ShowCaption();
  ShowPosition();
  ContinueLoading();
}

void frmListview::LoadFirstScreen() {
  try {
    for (int i = 0; i < kSlicesAtFirst && model_.IsLoading() && model_.Rows() < kRowsAtFirst; ++i) {
      model_.Load(kSlice);
    }
  } catch (...) {
    TellLater(CaughtFailure());
  }
}

void frmListview::ContinueLoading() {
  if (model_.IsLoading()) {
    loader_.start(0);  // whenever nothing else is to be done
  } else {
    loader_.stop();
  }
}

void frmListview::LoadSlice() {
  if (acting_ || scanning_) return;
  try {
    if (model_.IsLoading()) model_.Load(kSlice);
  } catch (...) {
    TellLater(CaughtFailure());
  }
  ContinueLoading();
}

void frmListview::FollowRecords(RecordsetNews news) {
  if (scanning_) return;
  if (news.rows) model_.LoadAnew();
  grid_->Follow(news);
  if (!acting_) TakeOtherColumns();
  ShowPosition();
  if (news.rows && !acting_) ContinueLoading();
}

// The caller may open the same recordset anew, with another statement.
void frmListview::TakeOtherColumns() {
  const Recordset* const records = model_.Records();
  if (records == nullptr || records != CurrentList().rdset.get()) return;
  if (records->State() != ObjectState::kOpen || grid_->Rows().Fits()) return;
  try {
    BindColumns();
  } catch (...) {
    TellLater(CaughtFailure());
  }
}

void frmListview::ShowCaption() { setWindowTitle(QString::fromStdString(model_.Caption())); }

void frmListview::ShowPosition() {
  const Recordset* const records = model_.Records();
  if (records == nullptr || records->State() != ObjectState::kOpen) {
    return toolbar_->ShowPosition({});
  }
  const std::int64_t rows = grid_->Rows().Rows();
  const std::int64_t row = grid_->Rows().CurrentRow();
  QString position = row >= 0 && row < rows
                         ? QStringLiteral("Record %1 of %2").arg(Counted(row + 1), Counted(rows))
                         : QStringLiteral("%1 records").arg(Counted(rows));
  if (model_.IsLoading()) position += QStringLiteral(" so far...");
  toolbar_->ShowPosition(position);
}

void frmListview::closeEvent(QCloseEvent* event) {
  if (IsBusy()) return event->ignore();
  event->accept();
  if (!std::exchange(loaded_, false)) return;
  grid_->Table().Cells().Finish();
  TellUntold();
  loader_.stop();
  follower_.Follow(nullptr);
  try {
    StorePlacement(*this);
  } catch (...) {
    LogFailure();
  }
  CurrentList().pg.reset();
  emit Closed();
}

}  // namespace kel
