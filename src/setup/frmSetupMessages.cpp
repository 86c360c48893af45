#include "setup/frmSetupMessages.h"

#include <QComboBox>
#include <QLineEdit>
#include <memory>

#include "controls/widget_object.h"
#include "toolkit/CZURDLL.h"

namespace kel {
namespace {

constexpr const char* kErrorLocation = "DLL.ShowSetup";

void SelectText(QWidget& control) {
  auto* box = qobject_cast<QLineEdit*>(&control);
  if (const auto* const list = qobject_cast<QComboBox*>(&control)) box = list->lineEdit();
  if (box != nullptr) box->selectAll();
}

}  // namespace

void PointAt(QWidget& control, const std::string& message) {
  const std::shared_ptr<Object> from = WidgetObject(control);
  SharedToolkit().MsgBox(message, msgOK, std::nullopt, msgExclamation, false, 0, from.get());
  control.setFocus();
  SelectText(control);
}

bool TellFailure(const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (...) {
    SharedToolkit().ReportFailure(CaughtFailure(), kErrorLocation);
    return false;
  }
}

}  // namespace kel
