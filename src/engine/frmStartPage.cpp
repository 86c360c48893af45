#include "engine/frmStartPage.h"

#include "engine/page_range_entry.h"

namespace kel {

frmStartPage::frmStartPage(JobValues& job)
    : EntryDialog("frmStartPage", tr("Start Page")),
      job_(job),
      txtPageNo_(AddNumberBox("txtPageNo", tr("First page &number:"),
                              QString::fromStdString(StartPageText(job)))) {
  job_.start_page_changed = false;
  const Button* const ok = AddButton("cmdOk", tr("&OK"), QDialogButtonBox::AcceptRole);
  connect(ok, &Button::clicked, this, &frmStartPage::Take);
}

void frmStartPage::Take() {
  TakeStartPage(job_, txtPageNo_->text().toStdString());
  accept();
}

}  // namespace kel
