// The desktop's own programs, where no office is automated.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace kel {

/// Programs of the user's desktop. They get file names and texts as they are: nothing in these is
/// ever read as a command. Every operation throws Error 429 when the program that it needs is not
/// there; the description names it.
class DesktopPrograms {
 public:
  virtual ~DesktopPrograms() = default;

  /// Opens a file in the user's program for its kind.
  virtual void Open(const std::filesystem::path& file) = 0;

  /// Shows a new mail message with a file attached. The attachment's name is that of the file.
  virtual void ComposeMail(const std::string& subject, const std::filesystem::path& attachment) = 0;

  /// Throws what MakeSheet would throw for want of the program.
  virtual void RequireSheetMaker() = 0;
  /// Makes the .xls file `sheet` of the workbook `workbook` (.xlsx); both have their endings.
  /// `go_on` is asked all the time; False stops it. False when stopped: there is no `sheet` then.
  virtual bool MakeSheet(const std::filesystem::path& workbook, const std::filesystem::path& sheet,
                         const std::function<bool()>& go_on) = 0;
};

}  // namespace kel
