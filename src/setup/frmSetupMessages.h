// How the windows of the printer setup tell what went wrong.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

namespace kel {

/// Tells that a control holds something wrong, then gives it the focus with its text selected.
void PointAt(QWidget& control, const std::string& message);

/// Does `work`; a failure takes the common error path, which shows it. False then.
bool TellFailure(const std::function<void()>& work);

}  // namespace kel
