#include "engine/frmPrint.h"

#include <memory>

#include "controls/widget_object.h"
#include "toolkit/CZURDLL.h"

namespace kel {

frmPrint::frmPrint(std::int32_t page_count)
    : EntryDialog("frmPrint", QString::fromStdString(PageRangeCaption(page_count))),
      page_count_(page_count),
      txtFrom_(AddNumberBox("txtFrom", tr("&From page:"), "1")),
      txtTo_(AddNumberBox("txtTo", tr("&To page:"), QString::number(page_count))) {
  const Button* const print = AddButton("cmdPrint", tr("&Print"), QDialogButtonBox::AcceptRole);
  const Button* const cancel = AddButton("cmdCancel", tr("&Cancel"), QDialogButtonBox::RejectRole);
  connect(print, &Button::clicked, this, &frmPrint::Print);
  connect(cancel, &Button::clicked, this, &frmPrint::reject);
}

void frmPrint::Print() {
  range_ = ReadPageRange(txtFrom_->text().toStdString(), txtTo_->text().toStdString(), page_count_);
  if (range_) return accept();
  const std::shared_ptr<Object> from = WidgetObject(*txtFrom_);
  SharedToolkit().MsgBox("Invalid Entry...", msgOK, std::nullopt, msgInformation, false, 0,
                         from.get());
  txtFrom_->selectAll();
}

}  // namespace kel
