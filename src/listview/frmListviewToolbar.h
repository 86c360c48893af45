// The tool bar of the list window.
#pragma once

#include <QToolBar>

#include "listview/frmListviewMenu.h"

namespace kel {

/// `tbr`: a button for each of the usual commands, named by its key. At its end the place in the
/// list; where there is no room for all the buttons come first.
class ListToolbar : public QToolBar {
 public:
  /// The buttons press the menu's actions. The menu outlives the bar.
  ListToolbar(const RecordsMenu& menu, QWidget* parent);

  void ShowPosition(const QString& position);

 private:
  class PositionLabel;

  PositionLabel* position_;  // a child
};

}  // namespace kel
