#include "controls/selection_mode.h"

#include "controls/member_arguments.h"

namespace kel {

int MultiSelectOf(const QAbstractItemView& view) {
  switch (view.selectionMode()) {
    case QAbstractItemView::MultiSelection:
      return kSimpleSelect;
    case QAbstractItemView::ExtendedSelection:
    case QAbstractItemView::ContiguousSelection:
      return kExtendedSelect;
    default:
      return kSingleSelect;
  }
}

void SetMultiSelect(QAbstractItemView& view, const Value& value) {
  switch (NumberWithin(value, kSingleSelect, kExtendedSelect, "MultiSelect")) {
    case kSimpleSelect:
      view.setSelectionMode(QAbstractItemView::MultiSelection);
      break;
    case kExtendedSelect:
      view.setSelectionMode(QAbstractItemView::ExtendedSelection);
      break;
    default:
      view.setSelectionMode(QAbstractItemView::SingleSelection);
  }
}

}  // namespace kel
