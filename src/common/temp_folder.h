// The library temporary folder, home of every work file and of the error log.
#pragma once

#include <filesystem>

namespace kel {

/// The folder of the calling thread, without a trailing separator.
///
/// It stands in $KELDLL_HOME, else in the user's cache folder (XDG_CACHE_HOME or ~/.cache) +
/// "/keldll", and is called DLLTemp, or DLLTemp2, DLLTemp3, ... where another process of the user
/// or another thread of this one holds the lower numbers. It is created with all missing parents,
/// mode 0700, at the first call and stays locked until the thread or process ends.
/// Throws Error when it cannot be made.
const std::filesystem::path& TempFolder();

/// What the creation of a public object does: makes the folder ready and deletes the files in it
/// that match *.tmp, *.txt, *.doc and *.xls. Sub-folders are left alone; what was put into the one
/// of handed-over files more than a week ago goes.
/// Throws Error when the folder cannot be made; a file that cannot be deleted is skipped.
void PrepareTempFolder();

/// The sub-folder of files that other programs were given to open (common/handover.h).
inline constexpr const char* kHandoverFolderName = "handover";

}  // namespace kel
