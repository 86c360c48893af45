#include "controls/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

// A static library's resources are not there before this; it must stand outside every namespace.
static void LoadIconResources() { Q_INIT_RESOURCE(icons); }

namespace kel {
namespace {

constexpr double kDisabledOpacity = 0.4;

QString FileOf(const QString& name) {
  LoadIconResources();
  return ":/keldll/icons/" + name + ".svg";
}

QColor StrokeColor(QIcon::Mode mode) {
  return QGuiApplication::palette().color(mode == QIcon::Selected ? QPalette::HighlightedText
                                                                  : QPalette::WindowText);
}

class SvgIconEngine : public QIconEngine {
 public:
  explicit SvgIconEngine(const QString& name) : name_(name) {
    QFile file(FileOf(name));
    if (file.open(QIODevice::ReadOnly)) svg_ = file.readAll();
  }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const double scale = painter->device()->devicePixelRatio();
    painter->drawPixmap(rect, scaledPixmap(rect.size() * scale, mode, state, scale));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1);
  }

  // `size` is in pixels of the screen.
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/,
                       qreal /*scale*/) override {
    const QColor stroke = StrokeColor(mode);
    const QString key = QString("keldll/%1/%2x%3/%4/%5")
                            .arg(name_)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(stroke.name())
                            .arg(mode);
    QPixmap drawn;
    if (!QPixmapCache::find(key, &drawn)) {
      drawn = Draw(size, stroke, mode == QIcon::Disabled ? kDisabledOpacity : 1);
      QPixmapCache::insert(key, drawn);
    }
    return drawn;
  }

  QString key() const override { return "keldll"; }
  QString iconName() override { return name_; }
  bool isNull() override { return svg_.isEmpty(); }
  QIconEngine* clone() const override { return new SvgIconEngine(*this); }

 private:
  QPixmap Draw(const QSize& size, const QColor& stroke, double opacity) const {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QByteArray svg = svg_;
    QSvgRenderer renderer(svg.replace("currentColor", stroke.name().toLatin1()));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&pixmap);
    painter.setOpacity(opacity);
    renderer.render(&painter, QRectF(QPointF(), size));
    return pixmap;
  }

  QString name_;
  QByteArray svg_;
};

}  // namespace

QIcon Icon(const QString& name) {
  if (!QFile::exists(FileOf(name))) return {};
  return QIcon(new SvgIconEngine(name));  // the icon owns its engine
}

QStringList IconNames() {
  return {"print",    "previous", "next",        "zoom-in",        "zoom-out",        "best-fit",
          "export",   "find",     "back-color",  "fore-color",     "about",           "close",
          "save",     "update",   "delete",      "message-print",  "close-all",       "information",
          "question", "critical", "exclamation", "busy",           "ready",           "first",
          "last",     "filter",   "refresh",     "sort-ascending", "sort-descending", "align",
          "preview"};
}

}  // namespace kel
