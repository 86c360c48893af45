#include "export/paper_geometry.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "common/error.h"
#include "common/names.h"
#include "common/text_cells.h"

namespace kel {
namespace {

constexpr double kPointsPerInch = 72;
constexpr double kSideBorder = 0.25 * kPointsPerInch;
constexpr double kEndBorder = 0.075 * kPointsPerInch;
constexpr double kMostInches = 200;  // ISO 32000-1, annex C.2

constexpr double kMostPoints = 1638;  // what word processors allow

constexpr double kLineHeight = kPointsPerInch / 6;
constexpr double kDefaultPitch = 10;
constexpr double kMostPitch = 100;
constexpr double kSizeTimesPitch = 120;  // a 12 point letter is a tenth of an inch wide
constexpr double kHighestLetter = 12;

void CheckInches(double inches, double least, std::string_view what) {
  if (inches > least && inches <= kMostInches) return;
  throw Error(error_number::kInvalidProcedureCall, "the " + std::string(what) +
                                                       " of the paper must be more than "
                                                       "its borders and at most 200 inches");
}

}  // namespace

PaperSize SheetOf(double width, double height, bool portrait) {
  if (!portrait) std::swap(width, height);
  CheckInches(width, 2 * kSideBorder / kPointsPerInch, "width");
  CheckInches(height, 2 * kEndBorder / kPointsPerInch, "height");
  return {width * kPointsPerInch, height * kPointsPerInch};
}

PaperArea AreaOf(PaperSize sheet) {
  return {kSideBorder, kEndBorder, sheet.width - 2 * kSideBorder, sheet.height - 2 * kEndBorder};
}

TextPitch PitchOf(std::string_view character_set) {
  const std::string_view name = TrimBlanks(character_set);
  double pitch = 0;
  const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), pitch);
  const std::string_view unit =
      TrimBlanks(name.substr(static_cast<std::size_t>(end - name.data())));
  const bool is_pitch = failure == std::errc() && SameName(unit.substr(0, 3), "cpi") &&
                        pitch >= 1 && pitch <= kMostPitch;
  if (!is_pitch) pitch = kDefaultPitch;
  return {std::min(kSizeTimesPitch / pitch, kHighestLetter), kPointsPerInch / pitch, kLineHeight};
}

void CheckPoints(double points) {
  if (points > 0 && points <= kMostPoints) return;
  throw Error(error_number::kInvalidProcedureCall,
              "the size of the font must be more than 0 and at most 1638 points");
}

double ScaleToFit(PaperArea area, double width, double height) {
  return std::min({1.0, width > area.width ? area.width / width : 1.0,
                   height > area.height ? area.height / height : 1.0});
}

}  // namespace kel
