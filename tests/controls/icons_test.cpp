#include "controls/icons.h"

#include <gtest/gtest.h>

#include <QtWidgets>

namespace kel {
namespace {

QImage ImageOf(const QString& name, int size, QIcon::Mode mode = QIcon::Normal) {
  return Icon(name)
      .pixmap(QSize(size, size), 1, mode)
      .toImage()
      .convertToFormat(QImage::Format_ARGB32);
}

int Opacity(const QImage& image) {
  int sum = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) sum += qAlpha(image.pixel(x, y));
  }
  return sum;
}

TEST(Icons, EveryNameHasAPictureOfItsOwnAtTheSmallestSize) {
  EXPECT_EQ(IconNames().size(), 31);
  QList<QImage> seen;
  for (const QString& name : IconNames()) {
    const QImage image = ImageOf(name, 16);
    ASSERT_EQ(image.size(), QSize(16, 16)) << name.toStdString();
    EXPECT_GT(Opacity(image), 16 * 255) << name.toStdString();
    EXPECT_FALSE(seen.contains(image)) << name.toStdString();
    seen << image;
  }
  EXPECT_TRUE(Icon("no-such-icon").isNull());
}

TEST(Icons, StrokesFollowThePaletteAndAccentsDoNot) {
  const QPalette before = QApplication::palette();
  const QIcon close = Icon("close");
  for (const QColor& color : {QColor(Qt::black), QColor(0xEE, 0xEE, 0xEE)}) {
    QPalette palette = before;
    palette.setColor(QPalette::WindowText, color);
    QApplication::setPalette(palette);
    EXPECT_EQ(close.pixmap(24, 24).toImage().pixelColor(12, 12), color);
    const QColor edge = ImageOf("critical", 48).pixelColor(24, 6);
    EXPECT_GT(edge.red(), 200);
    EXPECT_LT(edge.green(), 120);
  }
  QApplication::setPalette(before);
}

TEST(Icons, ADisabledIconIsTheSameButFainter) {
  const int enabled = Opacity(ImageOf("print", 24));
  const int disabled = Opacity(ImageOf("print", 24, QIcon::Disabled));
  EXPECT_LT(disabled, enabled / 2);
  EXPECT_GT(disabled, enabled / 4);
}

TEST(Icons, AScaledScreenGetsAllItsPixels) {
  const QPixmap pixmap = Icon("find").pixmap(QSize(24, 24), 2);
  EXPECT_EQ(pixmap.size(), QSize(48, 48));
  EXPECT_EQ(pixmap.devicePixelRatio(), 2);

  QImage screen(48, 48, QImage::Format_ARGB32_Premultiplied);
  screen.setDevicePixelRatio(2);
  screen.fill(Qt::transparent);
  QPainter painter(&screen);
  Icon("find").paint(&painter, QRect(0, 0, 24, 24));
  painter.end();
  EXPECT_EQ(screen, pixmap.toImage().convertToFormat(screen.format()));
}

}  // namespace
}  // namespace kel
