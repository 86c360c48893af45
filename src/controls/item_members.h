// The methods that change the items of combo boxes and list boxes; NewIndex follows them.
#pragma once

#include "controls/widget_members.h"

namespace kel {

void AddItem(Control& control, Arguments& arguments);
void RemoveItem(Control& control, Arguments& arguments);
void ClearItems(Control& control);

}  // namespace kel
