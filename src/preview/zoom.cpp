#include "preview/zoom.h"

namespace kel {

namespace {

constexpr double kSkippedZoom = 3;  // stands between 2.25 and 4.5 in steps, but is never shown
constexpr double kBelowLeastZoom = 1.5;

}  // namespace

double ZoomedSize(double size, bool in) {
  if (!in && !CanZoomOut(size)) return size;
  if (size == kLeastZoom) size = kSkippedZoom;
  size += in ? kZoomStep : -kZoomStep;
  if (size == kBelowLeastZoom) size = kLeastZoom;
  if (size == kSkippedZoom && !in) size = kLeastZoom;
  return size;
}

double BestFitSize(const std::function<bool(double size)>& fits) {
  double size = kBestFitStart;
  while (size > kBestFitStep && !fits(size)) size -= kBestFitStep;
  return size;
}

}  // namespace kel
