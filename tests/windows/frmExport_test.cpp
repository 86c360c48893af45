#include "export/frmExport.h"

#include <QFileDialog>
#include <QMessageBox>

#include "common/temp_folder.h"
#include "export/native_office.h"
#include "platform/qt/qt_report_windows.h"
#include "windows/preview_fixture.h"

namespace kel::testing {
namespace {

class LiveDesktop : public RecordingDesktop {
 public:
  void DoEvents() override { QApplication::processEvents(); }
};

// Makes no file of its own; what it is asked for is written down.
class FakeOffice : public Office {
 public:
  bool MakeFile(ExportFormat format, const ReportSnapshot& report,
                const std::filesystem::path& target, Handover handover,
                ExportProgress& progress) override {
    asked += std::string(kFormatTexts.at(static_cast<std::size_t>(format))) + " of " +
             report.page_file.filename().string() + (handover == Handover::kOpen ? " open" : "");
    const bool whole = !make || make(progress);
    if (whole) WriteFile(target, "made");
    return whole;
  }
  void SendMail(const std::filesystem::path& /*file*/, const AttachmentNames& names) override {
    asked += " mail " + names.subject + " as " + names.file;
  }
  std::function<bool(ExportProgress& progress)> make;
  std::string asked;
};

// An export without end, until it is stopped.
bool RunUntilStopped(ExportProgress& progress) {
  const QDeadlineTimer deadline(std::chrono::seconds(20));
  progress.Begin(std::int64_t{1} << 40);
  progress.Step(std::int64_t{1} << 39);
  while (progress.Step(1)) {
    if (deadline.hasExpired()) throw std::runtime_error("never stopped");
  }
  return false;
}

class FrmExportTest : public PreviewTest {
 protected:
  void SetUp() override {
    desktop_ = std::make_shared<LiveDesktop>();
    PreviewTest::SetUp();
    report_.settings.font_size = 10;
    report_.settings.page_width = 8.5;
    report_.settings.page_height = 12;
    CurrentExportHost().office = office_;
    Ask();
  }
  void TearDown() override {
    delete dialog_;
    PreviewTest::TearDown();
  }

  void Ask() {
    delete dialog_;
    dialog_ = new frmExport(report_);
    dialog_->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_));
  }
  template <typename Control = QWidget>
  Control& Part(const char* name) {
    return Child<Control>(*dialog_, name);
  }
  QLineEdit& Name() { return Part<QLineEdit>("txtFilename"); }
  void ClickOn(const char* name) { QTest::mouseClick(&Part(name), Qt::LeftButton); }
  void Choose(ExportFormat format, ExportDestination destination) {
    Part<QComboBox>("cmbFormat").setCurrentIndex(static_cast<int>(format));
    Part<QComboBox>("cmbDestination").setCurrentIndex(static_cast<int>(destination));
  }
  static QString Focused() { return QApplication::focusWidget()->objectName(); }

  /// Types a path into the file dialog that comes, and a key.
  static void WhenBrowsing(const QString& path, Qt::Key key = Qt::Key_Return) {
    WhenModal("QFileDialog", [=](QWidget& browser) {
      EXPECT_EQ(browser.windowTitle(), "Export Report As");
      auto& file = Child<QLineEdit>(browser, "fileNameEdit");
      if (!path.isEmpty()) file.setText(path);
      QTest::keyClick(&file, key);
    });
  }
  QString PathOf(const char* name) const {
    return QString::fromStdString((folder_ / name).string());
  }

  std::shared_ptr<FakeOffice> office_ = std::make_shared<FakeOffice>();
  QPointer<frmExport> dialog_;
};

TEST_F(FrmExportTest, EveryDestinationReachesTheOfficeAndTheChoicesAreKept) {
  ClickOn("OK");
  EXPECT_EQ(office_->asked, "Microsoft Word (*.doc) of report.rpt open");
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(settings_->Read("Export", "Format"), "0");

  Ask();
  Choose(ExportFormat::kSheet, ExportDestination::kMail);
  office_->asked.clear();
  Name().setFocus();
  QTest::keyClicks(&Name(), "  ");
  Press(Qt::Key_Return);
  ASSERT_EQ(desktop_->messages.size(), 1U);
  EXPECT_EQ(desktop_->messages[0].prompt, "Please enter attachment name.");
  EXPECT_EQ(desktop_->messages[0].title, "Export Report");
  EXPECT_EQ(office_->asked, "");
  EXPECT_TRUE(dialog_->isVisible());
  Type(Name(), "Sales");
  Press(Qt::Key_Return);
  EXPECT_EQ(office_->asked, "Microsoft Excel (*.xls) of report.rpt mail Sales as Sales.xls");

  Ask();
  EXPECT_EQ(Part<QComboBox>("cmbFormat").currentText(), "Microsoft Excel (*.xls)");
  EXPECT_EQ(Part<QComboBox>("cmbDestination").currentText(), "Microsoft Mail (Outlook Express)");
  EXPECT_EQ(Name().text(), "Sales");
  EXPECT_FALSE(Part("cmdBrowse").isEnabled());
}

TEST_F(FrmExportTest, AFileIsBrowsedForWhereItIsMissingAndReplacedOnlyWhenAgreed) {
  Choose(ExportFormat::kText, ExportDestination::kDiskFile);
  WhenBrowsing("", Qt::Key_Escape);
  ClickOn("OK");
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_EQ(office_->asked + Name().text().toStdString(), "");

  WriteFile(folder_ / "Sales 'of' <2026>.txt", "old");
  WhenBrowsing(PathOf("Sales 'of' <2026>"));  // without the ending
  QString question;
  WhenModal("", [&](QWidget& box) {
    const auto& asking = dynamic_cast<QMessageBox&>(box);
    question = asking.text();
    QTest::mouseClick(asking.button(QMessageBox::Yes), Qt::LeftButton);
  });
  ClickOn("cmdBrowse");
  EXPECT_TRUE(question.contains("Sales 'of' <2026>.txt")) << question.toStdString();
  EXPECT_EQ(Name().text(), PathOf("Sales 'of' <2026>.txt"));

  CurrentExportHost().office = std::make_shared<NativeOffice>(nullptr);
  for (const auto& [format, file, begin] :
       {std::tuple(ExportFormat::kText, "Sales 'of' <2026>.txt", "Trial Balance Page 1"),
        {ExportFormat::kPdf, "Sales 'of' <2026>.pdf", "%PDF-"}}) {
    dialog_->show();
    Choose(format, ExportDestination::kDiskFile);
    if (Name().text().isEmpty()) WhenBrowsing(PathOf("Sales 'of' <2026>.pdf"));
    ClickOn("OK");
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_TRUE(ReadFile(folder_ / file).starts_with(begin)) << file;
  }
  EXPECT_EQ(desktop_->messages.size(), 0U);
}

TEST_F(FrmExportTest, WhileAnExportRunsItCanOnlyBeStopped) {
  Choose(ExportFormat::kText, ExportDestination::kApplication);
  const std::vector<std::function<void()>> ways = {
      [&] { ClickOn("Cancel"); },
      [&] { Press(Qt::Key_Escape); },
      [&] { Press(Qt::Key_C, Qt::AltModifier); },
      [&] { dialog_->close(); },
  };
  for (std::size_t way = 0; way < ways.size(); ++way) {
    int seen = 0;
    office_->make = [&](ExportProgress& progress) {
      QTimer user;
      user.setSingleShot(true);
      user.callOnTimeout([&] {
        SavePicture(*dialog_, "frmExport_running");
        EXPECT_TRUE(Part("PB").isVisible());
        const auto& bar = Part<ProgressBar>("PB");
        EXPECT_NEAR(bar.Value() / static_cast<double>(bar.Max()), 0.5, 0.01);
        for (const char* const part : {"cmbFormat", "cmbDestination", "cmdBrowse", "OK"}) {
          EXPECT_FALSE(Part(part).isEnabled()) << part;
        }
        EXPECT_EQ(Focused(), "frmExport") << "Enter pressed twice must not press Cancel";
        ClickOn("OK");
        ++seen;
        ways.at(way)();
      });
      user.start(60);
      return RunUntilStopped(progress);
    };
    Part("OK").setFocus();
    Press(Qt::Key_Return);
    EXPECT_EQ(seen, 1) << way;
    EXPECT_TRUE(dialog_->isVisible()) << way;
    EXPECT_FALSE(Part("PB").isVisible());
    EXPECT_TRUE(Part("cmbFormat").isEnabled());
    EXPECT_FALSE(Name().isEnabled());
    EXPECT_EQ(Focused(), "OK");
  }
  EXPECT_FALSE(settings_->Read("Export", "Format"));
  EXPECT_EQ(desktop_->messages.size(), 0U);
  Press(Qt::Key_Escape);
  EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(FrmExportTest, AFailureIsToldAndLoggedAndMayBeTriedAgain) {
  office_->make = [](ExportProgress&) -> bool {
    throw Error(error_number::kDiskFull, "no room for this report");
  };
  ClickOn("OK");
  ASSERT_EQ(desktop_->messages.size(), 1U);
  EXPECT_EQ(desktop_->messages[0].prompt, "61 : no room for this report");
  EXPECT_NE(ReadFile(TempFolder() / "Error.log").find("[DLL.Export],61 : no room for this report"),
            std::string::npos);
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_FALSE(settings_->Read("Export", "Format"));
  office_->make = nullptr;
  ClickOn("OK");
  EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(FrmExportTest, TheProgramMayGoOnUnderTheDialogAndDestroyItWhileItExports) {
  dialog_->close();
  QtReportWindows windows;
  windows.ShowPreview(report_, ShowStyle::kModeless);
  const auto preview = [] {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (qobject_cast<frmPV*>(window) != nullptr) return QPointer<QWidget>(window);
    }
    return QPointer<QWidget>();
  };
  const ReportSnapshot other = WritePages(folder_ / "other.rpt", {{"Other", "\f"}}, 80);
  ASSERT_TRUE(QTest::qWaitForWindowActive(preview()));
  WhenModal("frmExport", [&](QWidget& dialog) {
    windows.ShowPreview(other, ShowStyle::kModeless);
    QTest::mouseClick(&Child(dialog, "OK"), Qt::LeftButton);
  });
  QTest::keyClick(preview(), Qt::Key_E, Qt::ControlModifier);
  EXPECT_EQ(office_->asked, "Microsoft Word (*.doc) of report.rpt open");

  for (const bool with_dialog : {false, true}) {
    windows.ShowPreview(report_, ShowStyle::kModeless);
    QPointer<QWidget> dialog;
    office_->make = [&](ExportProgress& progress) {
      QTimer program;
      int turn = 0;
      program.callOnTimeout([&] {
        if (turn++ == 0) {
          preview()->close();
          if (with_dialog) delete dialog;
        } else {
          Child<Button>(*dialog, "Cancel").click();
        }
      });
      program.start(0);
      return RunUntilStopped(progress);
    };
    WhenModal("frmExport", [&](QWidget& shown) {
      dialog = &shown;
      QTest::mouseClick(&Child(shown, "OK"), Qt::LeftButton);
      if (dialog) dialog->close();
    });
    QTest::keyClick(preview(), Qt::Key_E, Qt::ControlModifier);
    EXPECT_FALSE(dialog);
    EXPECT_TRUE(QTest::qWaitFor([&] { return preview().isNull(); }));
  }
  EXPECT_EQ(desktop_->messages.size(), 0U);
}

TEST_F(FrmExportTest, KeysAloneReachEverythingInReadingOrderAndNothingIsCutInALargeFont) {
  const QFont before = QApplication::font();
  QFont large = before;
  large.setPointSize(18);
  for (const QFont& font : {before, large}) {
    QApplication::setFont(font);
    Ask();
    Choose(ExportFormat::kPdf, ExportDestination::kDiskFile);
    Part("cmbFormat").setFocus();
    for (const char* const name :
         {"cmbFormat", "cmbDestination", "txtFilename", "cmdBrowse", "OK", "Cancel"}) {
      EXPECT_EQ(Focused(), name);
      Press(Qt::Key_Tab);
    }
    // "&Format :" and "&Filename :" share theirs: it goes round.
    for (const char* const name : {"cmbFormat", "txtFilename", "cmbFormat"}) {
      Press(Qt::Key_F, Qt::AltModifier);
      EXPECT_EQ(Focused(), name);
    }
    Press(Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ(Focused(), "cmbDestination");
    Press(Qt::Key_Down);
    Press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(Focused(), "txtFilename");
    for (const QWidget* child : dialog_->findChildren<QWidget*>()) {
      if (!child->isVisible()) continue;
      EXPECT_TRUE(child->parentWidget()->rect().contains(child->geometry()));
      EXPECT_EQ(child->size().expandedTo(child->minimumSizeHint()), child->size())
          << child->objectName().toStdString();
    }
    SavePicture(*dialog_, font == before ? "frmExport_mail" : "frmExport_large_font");
  }
  QApplication::setFont(before);
}

}  // namespace
}  // namespace kel::testing
