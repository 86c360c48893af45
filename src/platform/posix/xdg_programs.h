// The programs of a desktop that follows the freedesktop.org conventions.
#pragma once

#include "export/desktop_programs.h"

namespace kel {

/// Opens files with xdg-open, composes mail with xdg-email and makes .xls files with LibreOffice,
/// all found in PATH and started without a shell. A program that shows something to the user goes
/// on after the call; one that fails at once is told (Error 57).
class XdgPrograms : public DesktopPrograms {
 public:
  void Open(const std::filesystem::path& file) override;
  void ComposeMail(const std::string& subject, const std::filesystem::path& attachment) override;
  void RequireSheetMaker() override;
  bool MakeSheet(const std::filesystem::path& workbook, const std::filesystem::path& sheet,
                 const std::function<bool()>& go_on) override;
};

}  // namespace kel
