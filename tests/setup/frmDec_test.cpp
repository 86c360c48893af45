#include "setup/frmDec.h"

#include "common/error.h"
#include "setup/setup_window_fixture.h"

namespace kel {
namespace {

class ReadOnlyStore : public MemorySettingsStore {
  void Write(std::string_view, std::string_view, std::string_view) override {
    throw Error(error_number::kPermissionDenied, "the settings cannot be written");
  }
};

using FrmDecTest = testing::SetupWindowTest<frmDec>;

TEST_F(FrmDecTest, SetsAreAddedShownAndDeletedFromTheKeyboard) {
  testing::SavePicture(*dialog_, "frmDec");
  const auto& pitch = Find<QComboBox>("cmbFont");
  const auto& code = Find<QLineEdit>("Init");
  EXPECT_EQ(code.text(), "80");
  Type("1");  // over the selected text
  EXPECT_EQ(pitch.currentText(), "1") << "not completed to 10 cpi";
  EXPECT_FALSE(Find("Delete").isEnabled());
  Type("7");
  EXPECT_EQ(code.text(), "15") << "the number alone names a set";
  pitch.lineEdit()->selectAll();
  Type("20");
  Press(Qt::Key_Tab);
  Type("256");
  Press(Qt::Key_Return);
  EXPECT_EQ(LastMessage(), "Invalid decimal codes");
  EXPECT_EQ(code.selectedText(), "256");
  Type("99");
  PressAlt(Qt::Key_A);
  EXPECT_EQ(settings_->Read("Characters", "20 cpi"), "99");
  EXPECT_EQ(pitch.currentText(), "20 cpi");
  for (const bool yes : {false, true}) {
    desktop_->answer = yes;
    PressAlt(Qt::Key_L);
    EXPECT_EQ(LastMessage(), "Delete?");
    EXPECT_EQ(pitch.count(), yes ? 4 : 5);
  }
  EXPECT_EQ(code.text(), "80");
  CurrentHost().settings = std::make_shared<ReadOnlyStore>();
  Press(Qt::Key_Return);
  EXPECT_NE(LastMessage().find("the settings cannot be written"), std::string::npos);
  EXPECT_TRUE(dialog_->isVisible());
  Press(Qt::Key_Escape);
  EXPECT_FALSE(dialog_->isVisible());
}

}  // namespace
}  // namespace kel
