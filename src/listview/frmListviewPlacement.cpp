#include "listview/frmListviewPlacement.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "common/host.h"
#include "common/numeric_value.h"
#include "common/twips.h"

namespace kel {
namespace {

constexpr const char* kSection = "ListView";
constexpr double kFarthest = 1'000'000;  // twips: beyond any screen, whatever is stored
constexpr int kTitleBar = 32;            // of which a part is needed to drag a window, in pixels

int Stored(const char* key, int current) {
  const std::optional<std::string> text = CurrentHost().settings->Read(kSection, key);
  const std::optional<double> twips = text ? ReadNumber(*text) : std::nullopt;
  if (!twips || !std::isfinite(*twips)) return current;
  return PixelsOf(static_cast<Twips>(std::clamp(*twips, -kFarthest, kFarthest)));
}

void Store(const char* key, int pixels) {
  CurrentHost().settings->Write(kSection, key, std::to_string(TwipsOf(pixels)));
}

bool IsReachable(const QWidget& window) {
  const QRect title(window.pos(), QSize(window.width(), kTitleBar));
  for (const QScreen* const screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry() & title;
    if (seen.width() >= kTitleBar && seen.height() >= kTitleBar / 2) return true;
  }
  return false;
}

void BringOntoScreen(QWidget& window) {
  const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
  window.resize(window.size().boundedTo(room.size()));
  window.move(room.center() - window.rect().center());
}

}  // namespace

// A window that was never placed is left to the window system.
void LoadPlacement(QWidget& window) {
  const QPoint before = window.pos();
  const int top = Stored("Top", before.y());
  const int left = Stored("Left", before.x());
  const int height = Stored("Height", window.height());
  const int width = Stored("Width", window.width());
  window.resize(std::max(width, 1), std::max(height, 1));
  if (QPoint(left, top) != before) window.move(left, top);
  if (!IsReachable(window)) BringOntoScreen(window);
}

void StorePlacement(const QWidget& window) {
  if (window.isMaximized() || window.isFullScreen()) return;
  Store("Top", window.y());
  Store("Left", window.x());
  Store("Height", window.height());
  Store("Width", window.width());
}

}  // namespace kel
