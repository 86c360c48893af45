// The sizes that the page's font goes through. All sizes are in points.
#pragma once

#include <functional>

namespace kel {

inline constexpr double kZoomStep = 1.5;
inline constexpr double kLeastZoom = 2.25;
inline constexpr double kMostZoom = 25.5;
/// The size with which a preview opens.
inline constexpr double kFirstZoom = 9;
inline constexpr double kBestFitStart = 9.75;
inline constexpr double kBestFitStep = 0.75;

/// The next size. The sizes run 2.25, 4.5, 6, 7.5, ...: 3 is skipped in both directions.
double ZoomedSize(double size, bool in);

inline bool CanZoomOut(double size) { return size > kLeastZoom; }
inline bool CanZoomIn(double size) { return size < kMostZoom; }

/// The largest of 9.75, 9, 8.25, ... at which the page fits; 0.75, below which there is no font,
/// when none does.
double BestFitSize(const std::function<bool(double size)>& fits);

}  // namespace kel
