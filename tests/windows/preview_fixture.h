// A preview window over a report of three pages, driven as a person drives it.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <QtWidgets>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "common/host.h"
#include "engine/page_file_writer.h"
#include "engine/report_windows.h"
#include "preview/frmPV.h"
#include "preview/frmPVColorBox.h"
#include "preview/frmPVPage.h"
#include "preview/preview_commands.h"
#include "support/modal_window.h"
#include "support/recording_desktop.h"
#include "support/test_folder.h"

namespace kel::testing {

using Pages = std::vector<std::vector<std::string>>;

/// Writes pages of equally many lines, and tells of them what a finished job tells.
inline ReportSnapshot WritePages(const std::filesystem::path& path, const Pages& pages,
                                 std::int32_t page_width) {
  OutputFile file(path);
  PageFileWriter writer(file);
  for (const auto& page : pages) {
    writer.BeginPage();
    for (const std::string& line : page) writer.WriteLine(line);
  }
  writer.Finish();
  file.Commit();
  ReportSnapshot report;
  report.page_file = path;
  report.job.first_page = 1;
  report.job.page_count = static_cast<std::int32_t>(pages.size());
  report.job.page_width = page_width;
  report.job.page_length = static_cast<std::int32_t>(pages.front().size());
  report.job.page_offsets =
      std::make_shared<const std::vector<std::uint64_t>>(writer.TakePageOffsets());
  return report;
}

/// Page n says "Page n" on its first line; "cash" stands twice on page 2 and once on page 3.
inline Pages ThreePages() {
  return {{"Trial Balance Page 1", "", "Capital      1,000.00", "   ", "\f"},
          {"Trial Balance Page 2", "", "Cash in hand, petty cash", "\001\033EBold\033F", "\f"},
          {"Trial Balance Page 3", "", "CA\033FSH at bank", "", "\f"}};
}

class PreviewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CurrentHost().desktop = desktop_;
    CurrentHost().settings = settings_;
    report_ = WritePages(folder_ / "report.rpt", ThreePages(), 40);
  }
  void TearDown() override {
    window_.reset();
    CurrentReportHost() = {};
  }

  /// Opens the window wide enough for the whole tool bar, whatever the screen's size.
  frmPV& Open() { return Open(report_); }
  frmPV& Open(const ReportSnapshot& report, QSize size = {1280, 720}) {
    window_ = std::make_unique<frmPV>(report);
    window_->setWindowState(Qt::WindowNoState);
    window_->resize(size);
    window_->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    return *window_;
  }

  template <typename Control = QWidget>
  Control& Find(const char* name) {
    auto* control = window_->findChild<Control*>(QLatin1String(name));
    if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *control;
  }
  QLineEdit& PageBox() { return Find<QLineEdit>("txtPage"); }
  QLineEdit& FindBox() { return Find<QLineEdit>("txtFind"); }
  QScrollBar& VS() { return Find<QScrollBar>("VS"); }
  QScrollBar& HS() { return Find<QScrollBar>("HS"); }
  PageSurface& Pic() { return static_cast<PageSurface&>(Find("Pic")); }
  ColorBox& Box(const char* name) { return static_cast<ColorBox&>(Find(name)); }
  QString Notice() {
    const QLabel& label = Find<QLabel>("lblNotice");
    return label.isVisible() ? label.text() : QString();
  }

  /// The buttons, boxes and labels of the tool bar.
  std::vector<QWidget*> ToolbarControls() {
    std::vector<QWidget*> controls;
    controls.reserve(kPreviewButtons.size());
    for (const PreviewButton& button : kPreviewButtons) controls.push_back(&Find(button.key));
    for (const char* box : {"txtPage", "txtFind", "picBack", "picFore"}) {
      controls.push_back(&Find(box));
    }
    for (QLabel* label : Find("tbrPV").findChildren<QLabel*>()) controls.push_back(label);
    return controls;
  }

  bool IsEnabled(const char* key) { return Find<QToolButton>(key).isEnabled(); }
  void Click(const char* name) { QTest::mouseClick(&Find(name), Qt::LeftButton); }
  /// A wheel turned over the middle of a control, as the window system tells of it.
  void TurnWheel(QWidget& control, QPoint eighths, Qt::KeyboardModifiers modifiers = {}) {
    const QPoint middle = control.rect().center();
    QWheelEvent wheel(middle, control.mapToGlobal(middle), {}, eighths, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    qApp->notify(&control, &wheel);
  }
  /// Where the focus is.
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  void Type(QLineEdit& box, const QString& text) {
    box.setFocus();
    box.selectAll();
    QTest::keyClicks(&box, text);
  }
  void SearchFor(const QString& text) {
    Type(FindBox(), text);
    Press(Qt::Key_Return);
  }

  /// What the page shows at a cell, without its neighbours.
  QImage CellImage(int column, int line, int columns = 1) {
    const QSizeF cell = Pic().Cell();
    const QRectF place(column * cell.width(), line * cell.height(), columns * cell.width(),
                       cell.height());
    return Pic().grab(place.toAlignedRect()).toImage();
  }

  TestFolder folder_;
  std::shared_ptr<RecordingDesktop> desktop_ = std::make_shared<RecordingDesktop>();
  std::shared_ptr<SettingsStore> settings_ = std::make_shared<MemorySettingsStore>();
  ReportSnapshot report_;
  std::unique_ptr<frmPV> window_;
};

}  // namespace kel::testing
