// The host of a Qt program.
#pragma once

namespace kel {

/// Puts the user's settings (QtSettingsStore) and the screen (QtDesktop) into CurrentHost(), the
/// report windows (QtReportWindows) into CurrentReportHost(), the library's own office
/// (NativeOffice) with the programs of the desktop (XdgPrograms) into CurrentExportHost(), the list
/// window (QtListWindows) into CurrentListHost(). Call it once, before the first object of the
/// library is made. An application object is not needed: one is made with the first window of the
/// library, so a program that has its own makes that before. The other ports stay.
void InstallQtHost();

}  // namespace kel
