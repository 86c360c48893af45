#include "listview/frmListviewMenu.h"

#include <QPointer>
#include <QVariant>
#include <array>

#include "controls/icons.h"

namespace kel {
namespace {

struct MenuItem {
  ListCommand command;
  const char* name;
  const char* caption;
  const char* icon = nullptr;
  const char* tool_tip = nullptr;
  const char* shortcut = nullptr;
  const char* separator_before = nullptr;
};

constexpr std::array kItems = {
    MenuItem{ListCommand::kAscendingOrder, "mnuAscendingOrder", "Sort &Ascending", "sort-ascending",
             "Sort Ascending"},
    MenuItem{ListCommand::kDescendingOrder, "mnuDescendingOrder", "Sort &Descending",
             "sort-descending", "Sort Descending"},
    MenuItem{ListCommand::kMoveFirst, "mnuMoveFirst", "Move &First", "first", "Move to First",
             nullptr, "mnuSep2"},
    MenuItem{ListCommand::kMoveLast, "mnuMoveLast", "Move &Last", "last", "Move to Last"},
    MenuItem{ListCommand::kTotalRecords, "mnuTotalRecords", "&Total Records"},
    MenuItem{ListCommand::kFind, "mnuFind", "&Find", "find", "Find", "Ctrl+F", "mnuSep5"},
    MenuItem{ListCommand::kFilter, "mnuFilter", "Filt&er", "filter", "Filter"},
    MenuItem{ListCommand::kRefresh, "mnuRefresh", "&Refresh", "refresh", "Refresh", "F5"},
    MenuItem{ListCommand::kAlignGrid, "mnuAlignGrid", "&Align Grid", "align", "Align Grid"},
    MenuItem{ListCommand::kPrintColumnTotal, "mnuPrintColumnTotal", "Print &Column Total", nullptr,
             nullptr, nullptr, "mnuSep0"},
    MenuItem{ListCommand::kPrint, "mnuPrint", "&Print", "print", "Print", "Ctrl+P"},
    MenuItem{ListCommand::kPrintPreview, "mnuPrintPreview", "Print Previe&w", "preview",
             "Print Preview"},
    MenuItem{ListCommand::kHideColumn, "mnuHideColumn", "&Hide Column", nullptr, nullptr, nullptr,
             "mnuSep4"},
    MenuItem{ListCommand::kAbout, "mnuAbout", "&About"},
};

}  // namespace

RecordsMenu::RecordsMenu(QWidget* parent) : QMenu(QStringLiteral("&Records"), parent) {
  setObjectName(QStringLiteral("mnuRecords"));
  for (const MenuItem& item : kItems) {
    if (item.separator_before != nullptr) {
      addSeparator()->setObjectName(QLatin1String(item.separator_before));
    }
    QAction* const action = addAction(QLatin1String(item.caption));
    action->setObjectName(QLatin1String(item.name));
    if (item.icon != nullptr) action->setIcon(Icon(QLatin1String(item.icon)));
    if (item.tool_tip != nullptr) action->setToolTip(QLatin1String(item.tool_tip));
    if (item.shortcut != nullptr) action->setShortcut(QKeySequence(QLatin1String(item.shortcut)));
    connect(action, &QAction::triggered, this, [this, &item] { emit Chosen(item.command); });
  }
  ActionOf(ListCommand::kPrintColumnTotal).setCheckable(true);
  ShowColumnItems({});
}

QAction& RecordsMenu::ActionOf(ListCommand command) const {
  for (const MenuItem& item : kItems) {
    if (item.command == command) return Item(item.name);
  }
  Q_UNREACHABLE();
}

QAction& RecordsMenu::Item(const char* name) const {
  return *findChild<QAction*>(QLatin1String(name));
}

void RecordsMenu::Open(const Place& place, const QPoint& at) {
  const QPointer<RecordsMenu> self(this);
  ShowColumnItems(place);
  exec(at);
  if (self) ShowColumnItems({});
}

void RecordsMenu::ShowColumnItems(const Place& place) {
  ActionOf(ListCommand::kHideColumn).setVisible(place.on_column);
  Item("mnuSep4").setVisible(place.on_column);
  QAction& total = ActionOf(ListCommand::kPrintColumnTotal);
  total.setVisible(place.on_column && place.may_total);
  if (total.isVisible()) total.setChecked(place.totalled);
}

}  // namespace kel
