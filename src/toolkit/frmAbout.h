// The About window.
#pragma once

#include <QDialog>
#include <QString>

namespace kel {

/// The product's name and version, and a link that writes to its support. Its property `Tag` tells
/// who opened it.
class frmAbout : public QDialog {
 public:
  explicit frmAbout(const QString& caller_tag);

  /// Shows the window above `owner`, or above the active window, until it is closed.
  static void Show(const QString& caller_tag, QWidget* owner = nullptr);
};

}  // namespace kel
