// The list window.
#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "common/error.h"
#include "common/value.h"
#include "listview/frmListviewEvents.h"
#include "listview/frmListviewMenu.h"
#include "listview/list_model.h"

namespace kel {

class ListGrid;
class ListToolbar;
class frmOption;
enum class OptionMode;

/// Shows the recordset of the shared list settings in a grid, under a tool bar, with a pop-up menu:
/// published as frmListview. Only the rows in view are read from the recordset, so a list of ten
/// million rows opens and scrolls as one of ten does; rows that are still to come are read while
/// the program is idle.
///
/// The recordset is the caller's: the window follows what anybody does with it, and shows an empty
/// grid once it is closed.
///
///     auto* list = new frmListview;
///     QObject::connect(list, &frmListview::Closed, list, &QObject::deleteLater);
///     list->Bind(column_alignment);
///     list->show();
class frmListview : public QWidget {
  Q_OBJECT

 public:
  /// Loads caption and stored placement.
  explicit frmListview(QWidget* parent = nullptr);
  ~frmListview() override;

  /// Shows the list of the shared settings; also when another one is on show. Throws Error when
  /// there is no open recordset, and when an action is under way. The condition dialog is closed.
  void Bind(const Value& column_alignment);

 signals:
  /// The window was unloaded: its placement is stored, PG let go. Destroy it later (deleteLater),
  /// not at once.
  void Closed();

 protected:
  /// Refused while an action is under way.
  void closeEvent(QCloseEvent* event) override;

 private:
  bool IsBusy();
  void MakeControls();
  void ConnectControls();
  void BindColumns();
  void TakeOtherColumns();
  void LoadFirstScreen();
  void LoadSlice();
  void ContinueLoading();

  void Act(const std::function<void()>& action) noexcept;
  void Perform(ListCommand command);
  void GoToRow(std::int64_t row);
  void ClickHeading();
  void Enter(int column, const QString& typed);
  void OpenOption(OptionMode mode);
  void ShowTotalRecords();
  void ShowMenu(int column, QPoint place);

  void FollowRecords(RecordsetNews news);
  void ShowCaption();
  void ShowPosition();
  void Scan(bool scanning);
  void TellLater(const Error& failure);
  void TellUntold();

  ListModel model_;
  RecordsetFollower follower_;
  Value column_alignment_;
  ListToolbar* toolbar_ = nullptr;  // children
  ListGrid* grid_ = nullptr;
  RecordsMenu* menu_ = nullptr;
  std::unique_ptr<frmOption> option_;  // made at its first use
  QTimer loader_;
  std::optional<Error> untold_;
  bool acting_ = false;
  bool scanning_ = false;  // the condition dialog looks for possible values
  bool loaded_ = false;
};

}  // namespace kel
