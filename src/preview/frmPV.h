// The print preview window.
#pragma once

#include <QWidget>

#include "engine/report_windows.h"
#include "preview/page_model.h"
#include "preview/preview_commands.h"

namespace kel {

/// Where failures of the window's own are said to be from.
inline constexpr const char* kPreviewLocation = "DLL.PrintPreview";

class ColorBox;
class PageView;
class PreviewToolbar;

/// Shows a prepared report page by page, over the whole screen: zoom, going to pages, finding
/// texts, colours; printing and exporting of what is on show.
///
/// The page file is opened for every page and every search, and is never open between them. When
/// it cannot be read the failure is told and logged, and a note over the page says so until the
/// next page that can.
///
///     auto* preview = new frmPV(snapshot);
///     QObject::connect(preview, &frmPV::Closed, preview, &QObject::deleteLater);
///     preview->show();
class frmPV : public QWidget {
  Q_OBJECT

 public:
  explicit frmPV(const ReportSnapshot& report, QWidget* parent = nullptr);
  /// Closed with the window still on show, it keeps its colours as any close does.
  ~frmPV() override;

  /// Shows page 1 of another report in this window. Size of the text and colours stay.
  void ShowReport(const ReportSnapshot& report);

 signals:
  /// The window was unloaded. Destroy it later (deleteLater), not at once.
  void Closed();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeControls();
  void ConnectControls();
  void LoadColors();
  void StoreColors() noexcept;

  void Press(PreviewCommand command) noexcept;
  void Perform(PreviewCommand command);
  void GoToTypedPage();
  void LocatePage();
  void Zoom(bool in);
  void BestFit();
  void SetFontSize(double points);
  void ChooseColor(ColorBox& box);
  void TakeColors();
  void Print();
  void Export();

  void LoadPage(bool reset_find);
  void ShowPosition();
  void ShowFailure();
  void BeginWork(bool may_take_long);
  void EndWork() noexcept;

  PageModel model_;
  PreviewToolbar* toolbar_ = nullptr;
  PageView* view_ = nullptr;
  bool loaded_ = true;
};

}  // namespace kel
