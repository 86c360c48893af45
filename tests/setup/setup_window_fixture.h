// A window of the printer setup, driven as a person drives it.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <memory>
#include <string>

#include "common/host.h"
#include "support/modal_window.h"
#include "support/recording_desktop.h"

namespace kel::testing {

template <typename Dialog>
class SetupWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CurrentHost().desktop = desktop_;
    CurrentHost().settings = settings_;
    dialog_ = std::make_unique<Dialog>();
    dialog_->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
  }

  template <typename Control = QWidget>
  Control& Find(const char* name) {
    return Child<Control>(*dialog_, name);
  }
  void Click(const char* name) { QTest::mouseClick(&Find(name), Qt::LeftButton); }
  static void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
  static void PressAlt(Qt::Key key) {
    QTest::keyClick(QApplication::focusWidget(), key, Qt::AltModifier);
  }
  static void Type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  std::string LastMessage() { return desktop_->messages.back().prompt; }

  std::shared_ptr<RecordingDesktop> desktop_ = std::make_shared<RecordingDesktop>();
  std::shared_ptr<SettingsStore> settings_ = std::make_shared<MemorySettingsStore>();
  std::unique_ptr<Dialog> dialog_;
};

}  // namespace kel::testing
