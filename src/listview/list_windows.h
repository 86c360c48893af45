// The list window as CListView sees it.
#pragma once

#include <memory>
#include <string>

#include "common/error.h"
#include "common/object.h"
#include "common/value.h"
#include "engine/report_windows.h"  // ShowStyle

namespace kel {

/// Calls come on the thread of the list. An implementation throws Error when it cannot show a
/// window.
class ListWindows {
 public:
  virtual ~ListWindows() = default;

  /// Shows the list of the shared settings (CurrentList) with these column alignments, until it is
  /// closed with kModal. There is one list window per thread; while it is open it takes the new
  /// list. `parent`, which may be null, is the form that owns it.
  virtual void ShowListView(const Value& column_alignment, ShowStyle style, Object* parent) = 0;
};

/// Change it only while no other thread uses the library.
struct ListHost {
  /// Without a screen showing a list is refused with Error 5.
  std::shared_ptr<ListWindows> windows;
};

ListHost& CurrentListHost();

/// Tells a failure of the list window: the message box shows its description under `caption` and
/// closes by itself after 4 seconds; the mouse pointer is the normal one again. Where no message
/// can be shown nothing happens.
void ShowError(const Error& failure, const std::string& caption) noexcept;

}  // namespace kel
