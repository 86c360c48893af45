#include "setup/frmSetup.h"

#include <QFontDialog>

#include "controls/widget_object.h"
#include "engine/report_windows.h"
#include "setup/setup_window_fixture.h"

namespace kel {
namespace {

using testing::Child;
using testing::WhenModal;

class TwoPrinters : public SystemPrinter {
 public:
  std::vector<PrinterName> Printers() override {
    return {{"Office", "queue:office"}, {std::string(kPdfPrinter), ""}};
  }
  std::string DefaultPrinter() override { return "Office"; }
  std::unique_ptr<PrinterDocument> Begin(const DocumentSettings& /*settings*/) override {
    return nullptr;
  }
};

class FrmSetupTest : public testing::SetupWindowTest<frmSetup> {
 protected:
  void SetUp() override {
    CurrentReportHost().system_printer = std::make_shared<TwoPrinters>();
    SetupWindowTest::SetUp();
  }
  void TearDown() override { CurrentReportHost().system_printer = nullptr; }

  QString Text(const char* box) { return Find<QLineEdit>(box).text(); }
  int Tag(const char* label) { return Find<QLabel>(label).property(kTagProperty).toInt(); }
  // A window manager does that when a window above this one is closed.
  void ComeBack() {
    dialog_->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
  }
  // Its press is shown before it counts.
  void Choose(const char* option, Qt::Key mnemonic) {
    PressAlt(mnemonic);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Find<QRadioButton>(option).isChecked(); }));
  }
};

TEST_F(FrmSetupTest, TheKeyboardAloneSetsUpTextMode) {
  testing::SavePicture(*dialog_, "frmSetup_page");
  EXPECT_TRUE(Find<QRadioButton>("OptDOS").hasFocus());
  EXPECT_EQ(Find<QLabel>("lblLines").text(), "Total Number Of Lines Supported : 71");
  PressAlt(Qt::Key_H);
  Type("6");
  EXPECT_EQ(Tag("lblLines"), 35);
  Press(Qt::Key_Return);
  EXPECT_EQ(LastMessage(), "Total lines per page should not exceed 35.");
  EXPECT_TRUE(Find("mgnLines").hasFocus());
  EXPECT_EQ(Find<QLineEdit>("mgnLines").selectedText(), "60");
  Type("29");
  PressAlt(Qt::Key_F);
  testing::SavePicture(*dialog_, "frmSetup_text_mode");
  EXPECT_EQ(Find<QComboBox>("cmbPrinter").currentText(), "Epson LX-800") << "stored, not there";
  PressAlt(Qt::Key_I);
  Press(Qt::Key_Down);
  EXPECT_EQ(Text("lbl"), "queue:office");
  PressAlt(Qt::Key_T);
  Type("/dev/usb/lp0");
  PressAlt(Qt::Key_I);
  Press(Qt::Key_Down);
  EXPECT_EQ(Find<QComboBox>("cmbPrinter").currentText() + Text("lbl"), "PDF/dev/usb/lp0");
  Press(Qt::Key_Home);
  EXPECT_EQ(Text("lbl"), "LPT1:") << "the stored port of the stored printer";
  Press(Qt::Key_Down);
  PressAlt(Qt::Key_S);
  Press(Qt::Key_End);
  EXPECT_EQ(Tag("lblColumns"), 136);
  PressAlt(Qt::Key_G);
  Press(Qt::Key_End);
  PressAlt(Qt::Key_K);
  EXPECT_FALSE(dialog_->isVisible());
  const SetupValues saved = LoadSetup(*settings_);
  EXPECT_EQ(saved.printer + "," + saved.port, "Office,queue:office");
  EXPECT_EQ(saved.character_set + "," + saved.code_page, "17 cpi,CP1252");
  EXPECT_EQ(saved.Page()[PageField::kLines], "29");
}

TEST_F(FrmSetupTest, WindowsModeMeasuresAndSavesTheFontThatIsChosen) {
  PressAlt(Qt::Key_L);
  Type("7");
  Choose("OptWindows", Qt::Key_W);
  EXPECT_EQ(Text("mgnLeft"), "0") << "each mode has its own";
  EXPECT_EQ(Tag("lblColumns"), 96);
  EXPECT_EQ(Text("mgnLines"), "65");
  Click("cmdDefault");
  EXPECT_EQ(Text("mgnLines"), "60");
  PressAlt(Qt::Key_F);
  WhenModal("QFontDialog", [](QWidget& dialog) { dynamic_cast<QFontDialog&>(dialog).accept(); });
  PressAlt(Qt::Key_H);
  EXPECT_TRUE(Find<QLabel>("lblFont").text().startsWith("Courier New")) << "nothing was changed";
  ComeBack();
  WhenModal("QFontDialog", [](QWidget& dialog) {
    auto& fonts = dynamic_cast<QFontDialog&>(dialog);
    QFont font = fonts.currentFont();
    font.setPointSizeF(20);
    font.setStyleName("Italic");
    fonts.setCurrentFont(font);
    fonts.accept();
  });
  PressAlt(Qt::Key_H);
  ComeBack();
  testing::SavePicture(*dialog_, "frmSetup_windows_mode");
  EXPECT_EQ(Tag("lblColumns"), 48);
  EXPECT_TRUE(Find<QLabel>("lblFont").font().italic());
  Choose("OptLandscape", Qt::Key_A);
  EXPECT_EQ(Tag("lblColumns"), 69) << "of the turned sheet";
  Click("cmdOk");
  EXPECT_EQ(LastMessage(),
            "Total lines per page should not exceed " + std::to_string(Tag("lblLines")) + ".");
  Type("20");
  Press(Qt::Key_Return);
  EXPECT_FALSE(dialog_->isVisible());
  const SetupValues saved = LoadSetup(*settings_);
  EXPECT_FALSE(saved.text_mode || saved.portrait);
  EXPECT_EQ(saved.font.name, QFontInfo(QFont("Courier New")).family().toStdString());
  EXPECT_EQ(saved.font.points, 20);
  EXPECT_TRUE(saved.font.flags.italic);
  EXPECT_TRUE(settings_->ReadSection("Setup\\DOS").empty()) << "what was typed there is dropped";
}

TEST_F(FrmSetupTest, ADeletedCharacterSetHasToBeChosenAnewUnlessItIsTheDefault) {
  PressAlt(Qt::Key_F);
  WhenModal("frmDec", [](QWidget& editor) {
    QTest::mouseClick(&Child(editor, "Delete"), Qt::LeftButton);  // 10 cpi
    QTest::mouseClick(&Child(editor, "Cancel"), Qt::LeftButton);
  });
  PressAlt(Qt::Key_E);
  ComeBack();
  PressAlt(Qt::Key_P);
  Click("cmdOk");
  EXPECT_EQ(LastMessage(), "You must enter a font set.");
  EXPECT_TRUE(Find("cmbFont").hasFocus());
  Click("cmdDefault");
  EXPECT_EQ(Find<QComboBox>("cmbFont").currentText(), "10 cpi") << "though it is not listed";
  Click("cmdCancel");
  EXPECT_TRUE(settings_->ReadSection("Setup").empty());
}

}  // namespace
}  // namespace kel
