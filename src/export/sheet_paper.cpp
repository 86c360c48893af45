#include "export/sheet_paper.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kel {
namespace {

constexpr double kMillimetre = 1 / 25.4;  // inches
constexpr double kTolerance = 0.03;       // inches; settings are typed with few decimals

struct Paper {
  std::uint8_t code;
  double width;   // inches
  double height;  // inches
};

constexpr std::array<Paper, 13> kPapers = {{
    {1, 8.5, 11},                                // Letter
    {3, 11, 17},                                 // Tabloid
    {4, 17, 11},                                 // Ledger
    {5, 8.5, 14},                                // Legal
    {6, 5.5, 8.5},                               // Statement
    {7, 7.25, 10.5},                             // Executive
    {8, 297 * kMillimetre, 420 * kMillimetre},   // A3
    {9, 210 * kMillimetre, 297 * kMillimetre},   // A4
    {11, 148 * kMillimetre, 210 * kMillimetre},  // A5
    {14, 8.5, 13},                               // Folio
    {16, 10, 14},
    {39, 14.875, 11},  // US standard fanfold
    {40, 8.5, 12},     // German standard fanfold
}};

}  // namespace

std::uint8_t PaperCode(double width, double height) {
  const auto* const found = std::find_if(kPapers.begin(), kPapers.end(), [&](const Paper& paper) {
    return std::abs(paper.width - width) < kTolerance &&
           std::abs(paper.height - height) < kTolerance;
  });
  return found == kPapers.end() ? 0 : found->code;
}

}  // namespace kel
