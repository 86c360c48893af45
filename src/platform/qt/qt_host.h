// The host of a Qt program.
#pragma once

namespace kel {

/// Puts the user's settings (QtSettingsStore) into CurrentHost(). Call it once, before the first
/// object of the library is made; a QCoreApplication is not needed. The other ports stay.
void InstallQtHost();

}  // namespace kel
