#include "listview/frmListviewToolbar.h"

#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <array>

namespace kel {
namespace {

constexpr int kStep = 8;  // of the space around and between controls, in pixels at 100 %

struct ToolButton {
  const char* key;
  ListCommand command;
  bool ends_group = false;
};

constexpr std::array kButtons = {
    ToolButton{"First", ListCommand::kMoveFirst},
    ToolButton{"Last", ListCommand::kMoveLast, true},
    ToolButton{"Find", ListCommand::kFind},
    ToolButton{"Filter", ListCommand::kFilter},
    ToolButton{"Refresh", ListCommand::kRefresh, true},
    ToolButton{"Asc", ListCommand::kAscendingOrder},
    ToolButton{"Dsc", ListCommand::kDescendingOrder, true},
    ToolButton{"Align", ListCommand::kAlignGrid, true},
    ToolButton{"Preview", ListCommand::kPrintPreview},
    ToolButton{"Print", ListCommand::kPrint},
};

}  // namespace

// Asks for no room of its own, and cuts its text where it gets too little.
class ListToolbar::PositionLabel : public QLabel {
 public:
  explicit PositionLabel(QWidget* parent) : QLabel(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setContentsMargins(kStep, 0, kStep, 0);
  }

  QSize sizeHint() const override { return minimumSizeHint(); }
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const QRect room = contentsRect();
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideLeft, room.width());
    style()->drawItemText(&painter, room, Qt::AlignRight | Qt::AlignVCenter, palette(), isEnabled(),
                          shown, QPalette::WindowText);
  }
};

ListToolbar::ListToolbar(const RecordsMenu& menu, QWidget* parent)
    : QToolBar(parent), position_(new PositionLabel(this)) {
  setObjectName(QStringLiteral("tbr"));
  setAccessibleName(QStringLiteral("List"));
  setMovable(false);
  for (const ToolButton& button : kButtons) {
    QAction* const action = &menu.ActionOf(button.command);
    addAction(action);
    QWidget* const shown = widgetForAction(action);
    shown->setObjectName(QLatin1String(button.key));
    shown->setAccessibleName(action->toolTip());
    shown->setFocusPolicy(Qt::TabFocus);
    if (button.ends_group) addSeparator();
  }
  position_->setObjectName(QStringLiteral("lblPosition"));
  addWidget(position_);
}

void ListToolbar::ShowPosition(const QString& position) {
  position_->setText(position);
  position_->update();
}

}  // namespace kel
