// The list window on a Qt screen.
#pragma once

#include <memory>

#include "listview/list_windows.h"

class QWidget;

namespace kel {

class frmListview;

/// One list window is open at a time, on the application's thread; a modeless one closes when the
/// application's event loop ends. Throws Error 5 where no window can be shown (CanShowWindows).
class QtListWindows : public ListWindows {
 public:
  QtListWindows();
  ~QtListWindows() override;
  QtListWindows(const QtListWindows&) = delete;
  QtListWindows& operator=(const QtListWindows&) = delete;

  void ShowListView(const Value& column_alignment, ShowStyle style, Object* parent) override;

 private:
  void Make(const Value& column_alignment);
  void Open(QWidget* owner, bool modal);
  void WaitUntilClosed();

  std::unique_ptr<frmListview> list_;  // null while none is open
};

}  // namespace kel
