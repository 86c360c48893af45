// The pop-up menu of the list window.
#pragma once

#include <QAction>
#include <QMenu>
#include <QPoint>
#include <QWidget>

namespace kel {

enum class ListCommand {
  kAscendingOrder,
  kDescendingOrder,
  kMoveFirst,
  kMoveLast,
  kTotalRecords,
  kFind,
  kFilter,
  kRefresh,
  kAlignGrid,
  kPrintColumnTotal,
  kPrint,
  kPrintPreview,
  kHideColumn,
  kAbout,
};

/// `mnuRecords`: its items are the actions that the tool bar and the shortcuts use, too.
class RecordsMenu : public QMenu {
  Q_OBJECT

 public:
  explicit RecordsMenu(QWidget* parent);

  QAction& ActionOf(ListCommand command) const;
  /// The action or separator of that published name.
  QAction& Item(const char* name) const;

  /// What the menu is opened over.
  struct Place {
    bool on_column = false;
    bool may_total = false;  // the column
    bool totalled = false;
  };
  /// Shows the menu and returns when it is closed. Items for a column are there only meanwhile.
  void Open(const Place& place, const QPoint& at);

 signals:
  void Chosen(kel::ListCommand command);

 private:
  void ShowColumnItems(const Place& place);
};

}  // namespace kel
