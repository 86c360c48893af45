// The buttons of the preview's tool bar.
#pragma once

#include <array>

namespace kel {

enum class PreviewCommand {
  kPrint,
  kPrevious,
  kNext,
  kZoomIn,
  kZoomOut,
  kBestFit,
  kExport,
  kFind,
  kBackColor,
  kForeColor,
  kAbout,
  kClose,
};

struct PreviewButton {
  PreviewCommand command;
  const char* key;
  const char* caption;
  char letter;  // pressed with Ctrl; 0 for none
  const char* icon;
};

/// In the order of PreviewCommand.
inline constexpr std::array<PreviewButton, 12> kPreviewButtons = {{
    {PreviewCommand::kPrint, "Print", "Print", 'P', "print"},
    {PreviewCommand::kPrevious, "Previous", "Previous", 'R', "previous"},
    {PreviewCommand::kNext, "Next", "Next", 'N', "next"},
    {PreviewCommand::kZoomIn, "ZoomIn", "Zoom In", 'I', "zoom-in"},
    {PreviewCommand::kZoomOut, "ZoomOut", "Zoom Out", 'M', "zoom-out"},
    {PreviewCommand::kBestFit, "Best Fit", "Best Fit", 'B', "best-fit"},
    {PreviewCommand::kExport, "Export", "Export", 'E', "export"},
    {PreviewCommand::kFind, "Find", "Find", 'F', "find"},
    {PreviewCommand::kBackColor, "BackColor", "Back Color", 0, "back-color"},
    {PreviewCommand::kForeColor, "ForeColor", "Fore Color", 0, "fore-color"},
    {PreviewCommand::kAbout, "About", "About", 'T', "about"},
    {PreviewCommand::kClose, "Close", "Close", 'O', "close"},
}};

}  // namespace kel
