#include "controls/Button.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <QtWidgets>

#include "support/errors.h"

namespace kel {
namespace {

/// A window with a field and three buttons, as a person finds it.
class ButtonTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (QWidget* widget : std::initializer_list<QWidget*>{&field_, &first_, &button_, &last_}) {
      row_.addWidget(widget);
    }
    window_.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
    field_.setFocus();
  }

  // At 100 %, whatever the screen's scale.
  QImage Look() {
    QApplication::sendPostedEvents();
    QImage image(button_.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    button_.render(&image);
    return image;
  }
  QImage Look(int state) {
    button_.DRAWBUTTON(state);
    return Look();
  }
  QPoint Outside() const { return {button_.width() + 20, 5}; }

  QWidget window_;
  QHBoxLayout row_{&window_};
  QLineEdit field_;
  Button first_{"First"};
  Button button_{"&OK"};
  Button last_{"Last"};
  QSignalSpy clicks_{&button_, &Button::clicked};
};

TEST_F(ButtonTest, EveryStateLooksDifferent) {
  for (const int behavior : {0, Button::kStandardBehavior}) {
    button_.Behavior(behavior);
    const QImage normal = Look(Button::kNormal);
    const QImage hot = Look(Button::kHot);
    const QImage pressed = Look(Button::kPressed);
    EXPECT_NE(normal, hot);
    EXPECT_NE(hot, pressed);
    EXPECT_EQ(Look(77), pressed);  // every other value is pressed
    button_.Default(true);
    EXPECT_NE(Look(Button::kNormal), normal);
    button_.Default(false);
  }
}

void Drag(Button& button, const QPoint& to) {
  QMouseEvent move(QEvent::MouseMove, to, button.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QCoreApplication::sendEvent(&button, &move);
}

TEST_F(ButtonTest, ThePressedMouseSinksItAndOnlyAReleaseInsideClicks) {
  const QImage normal = Look(Button::kNormal);
  const QImage hot = Look(Button::kHot);
  const QImage pressed = Look(Button::kPressed);
  button_.setFocusPolicy(Qt::NoFocus);  // the focus rectangle would make the looks differ
  QTest::mouseMove(&button_, QPoint(5, 5));
  EXPECT_EQ(Look(), hot);
  QTest::mousePress(&button_, Qt::LeftButton, {}, QPoint(5, 5));
  EXPECT_EQ(Look(), pressed);
  EXPECT_EQ(clicks_.count(), 0);
  QTest::mouseRelease(&button_, Qt::LeftButton, {}, QPoint(5, 5));
  EXPECT_EQ(Look(), hot);
  EXPECT_EQ(clicks_.count(), 1);
  QTest::mouseClick(&button_, Qt::RightButton);

  QTest::mousePress(&button_, Qt::LeftButton, {}, QPoint(5, 5));
  Drag(button_, Outside());
  EXPECT_EQ(Look(), normal);
  Drag(button_, QPoint(6, 6));
  EXPECT_EQ(Look(), pressed);
  Drag(button_, Outside());
  QTest::mouseRelease(&button_, Qt::LeftButton, {}, Outside());
  EXPECT_EQ(Look(), normal);
  EXPECT_EQ(clicks_.count(), 1);
}

TEST_F(ButtonTest, SpaceSinksItAndItsReleaseClicks) {
  button_.setFocus();
  const QImage pressed = Look(Button::kPressed);
  button_.DRAWBUTTON(Button::kNormal);
  QTest::keyPress(&button_, Qt::Key_Space);
  EXPECT_EQ(Look(), pressed);
  Drag(button_, Outside());  // the mouse is not heard meanwhile
  EXPECT_EQ(Look(), pressed);
  EXPECT_EQ(clicks_.count(), 0);
  QTest::keyRelease(&button_, Qt::Key_Space);
  EXPECT_EQ(clicks_.count(), 1);

  QTest::keyClick(&button_, Qt::Key_Space, Qt::ShiftModifier);
  EXPECT_EQ(clicks_.count(), 1);
  QTest::keyPress(&button_, Qt::Key_Space);
  field_.setFocus();
  QTest::keyRelease(&button_, Qt::Key_Space);
  EXPECT_EQ(clicks_.count(), 1);
}

TEST_F(ButtonTest, LeftAndRightMoveTheFocus) {
  button_.setFocus();
  QTest::keyClick(&button_, Qt::Key_Right);
  EXPECT_TRUE(last_.hasFocus());
  QTest::keyClick(&last_, Qt::Key_Left);
  QTest::keyClick(&button_, Qt::Key_Left);
  EXPECT_TRUE(first_.hasFocus());
  QTest::keyClick(&first_, Qt::Key_Left);
  EXPECT_TRUE(field_.hasFocus());
}

TEST_F(ButtonTest, TheAccessKeyAndValueClickAtOnce) {
  QTest::keyClick(&field_, Qt::Key_O, Qt::AltModifier);
  EXPECT_EQ(clicks_.count(), 1);
  button_.Caption("&Yes");
  QTest::keyClick(&field_, Qt::Key_O, Qt::AltModifier);
  EXPECT_EQ(clicks_.count(), 1);
  QTest::keyClick(&field_, Qt::Key_Y, Qt::AltModifier);
  EXPECT_EQ(clicks_.count(), 2);
  button_.Value(false);
  EXPECT_EQ(clicks_.count(), 2);
  button_.Value(true);
  EXPECT_EQ(clicks_.count(), 3);
}

TEST_F(ButtonTest, ADisabledButtonIsEmbossedAndHearsNothing) {
  QPalette palette = button_.palette();
  palette.setColor(QPalette::Light, Qt::white);
  palette.setColor(QPalette::Dark, Qt::red);
  button_.setPalette(palette);
  button_.setFont(QFont("DejaVu Sans", 30));
  button_.Caption("H");
  button_.setFixedSize(120, 60);
  button_.setEnabled(false);
  // Somewhere in the caption a dark pixel has a light one to its lower right.
  const QImage image = Look();
  bool embossed = false;
  for (int x = 30, y = 10; y < 50; x = x < 90 ? x + 1 : 30, y += x == 30 ? 1 : 0) {
    embossed |= image.pixelColor(x, y) == QColor(Qt::red) &&
                image.pixelColor(x + 1, y + 1) == QColor(Qt::white);
  }
  EXPECT_TRUE(embossed);

  QTest::mouseMove(&button_, QPoint(5, 5));
  QTest::mouseClick(&button_, Qt::LeftButton);
  QTest::keyClick(&button_, Qt::Key_Space);
  QTest::keyClick(&field_, Qt::Key_H, Qt::AltModifier);
  button_.Value(true);
  EXPECT_EQ(clicks_.count(), 0);
  EXPECT_EQ(Look(), image);
}

TEST_F(ButtonTest, DisablingAPressedButtonLetsItRise) {
  const QImage pressed = Look(Button::kPressed);
  QTest::keyPress(&button_, Qt::Key_Space);
  button_.setEnabled(false);
  button_.setEnabled(true);
  EXPECT_NE(Look(), pressed);
  QTest::keyRelease(&button_, Qt::Key_Space);
  EXPECT_EQ(clicks_.count(), 0);
}

TEST_F(ButtonTest, TheFocusRectangleComesAndGoesWithTheFocus) {
  const QImage without = Look();
  button_.setFocus();
  const QImage with = Look();
  EXPECT_NE(with, without);
  button_.FocusRect(false);
  EXPECT_EQ(Look(), without);
  button_.FocusRect(true);
  button_.DRAWFocus(false);
  EXPECT_EQ(Look(), without);
  button_.DRAWFocus(true);
  EXPECT_EQ(Look(), with);
}

TEST_F(ButtonTest, FlatBehavioursHaveABorderInTheirColour) {
  button_.BorderColor(0x0000FF);
  EXPECT_NE(Look().pixelColor(0, 10), QColor(Qt::red));
  button_.Behavior(1);
  const QImage image = Look();
  EXPECT_EQ(image.pixelColor(0, 10), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(image.width() - 1, 10), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(10, image.height() - 1), QColor(Qt::red));
}

TEST_F(ButtonTest, TheArrowTakesTheRightmostFifteenPixelsAndTheCaptionStaysCentred) {
  button_.setFixedSize(200, 30);
  const QImage without = Look();
  button_.DropDown(1);
  const QImage with = Look();
  EXPECT_EQ(with.copy(0, 0, 185, 30), without.copy(0, 0, 185, 30));
  EXPECT_NE(with.copy(185, 0, 13, 30), without.copy(185, 0, 13, 30));
  EXPECT_EQ(with.copy(198, 0, 2, 30), without.copy(198, 0, 2, 30));
  EXPECT_GT(button_.sizeHint().width(), last_.fontMetrics().horizontalAdvance("OK") + 30);
}

TEST_F(ButtonTest, AssistiveToolsReadTheCaptionWithoutItsMark) {
  QAccessibleInterface& accessible = *QAccessible::queryAccessibleInterface(&button_);
  EXPECT_EQ(accessible.text(QAccessible::Name), "OK");
  EXPECT_EQ(accessible.role(), QAccessible::Button);
}

TEST_F(ButtonTest, TheOwnerMayEndTheButtonInItsClick) {
  auto* const doomed = new Button("x", &window_);
  QObject::connect(doomed, &Button::clicked, doomed, [doomed] { delete doomed; });
  QSignalSpy gone(doomed, &QObject::destroyed);
  QTest::mouseClick(doomed, Qt::LeftButton);
  EXPECT_EQ(gone.count(), 1);
}

TEST(ButtonProperties, ComeBackUnderTheirPublishedKeysAndMissingOnesAreTheDefaults) {
  PropertyBag bag;
  bag.Write("CAPTION", "&Stop");
  bag.Write("forecolor", 0x0000FF);
  bag.Write("FocusRect", false);
  bag.Write("behavior", 1);
  bag.Write("dropdown", 3);
  bag.Write("Enabled", false);
  bag.Write("Font", "DejaVu Sans Mono,14");
  Button button;
  button.ReadProperties(bag);
  QWidget window;
  Button copy("x", &window);
  copy.setObjectName("cmdStop");
  copy.ReadProperties(button.WriteProperties());
  EXPECT_EQ(copy.Caption(), "&Stop");
  EXPECT_EQ(copy.ForeColor(), 0x0000FFU);
  EXPECT_EQ(copy.BackColor(), system_color::kButtonFace);
  EXPECT_FALSE(copy.FocusRect() || copy.isEnabled());
  EXPECT_EQ(copy.Behavior(), 1);
  EXPECT_EQ(copy.DropDown(), 3);
  EXPECT_EQ(copy.font().family(), "DejaVu Sans Mono");
  EXPECT_EQ(copy.font().pointSize(), 14);

  copy.ReadProperties({});
  EXPECT_EQ(copy.Caption(), "cmdStop");
  EXPECT_EQ(copy.Behavior(), Button::kStandardBehavior);
  EXPECT_TRUE(copy.FocusRect() && copy.isEnabled());
  EXPECT_EQ(copy.font(), window.font());
}

TEST(ButtonProperties, AWrongTypeChangesNothing) {
  Button button("&OK");
  PropertyBag bag;
  bag.Write("Caption", "Other");
  bag.Write("Behavior", "flat");
  EXPECT_EQ(testing::ErrorOf([&] { button.ReadProperties(bag); }).Number(),
            error_number::kTypeMismatch);
  EXPECT_EQ(button.Caption(), "&OK");
}

}  // namespace
}  // namespace kel
