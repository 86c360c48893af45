#include "controls/text_alignment.h"

#include <array>

#include "common/text_cells.h"
#include "controls/member_arguments.h"

namespace kel {
namespace {

constexpr std::array kOfFields = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
constexpr std::array kAcross = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
constexpr std::array kDown = {Qt::AlignTop, Qt::AlignVCenter, Qt::AlignBottom};
constexpr int kGeneral = 9;

template <typename Flags>
int PlaceIn(const Flags& flags, Qt::Alignment alignment, int otherwise) {
  for (std::size_t i = 0; i < flags.size(); ++i) {
    if (alignment.testFlag(flags.at(i))) return static_cast<int>(i);
  }
  return otherwise;
}

}  // namespace

Value AlignmentValue(Qt::Alignment alignment) { return PlaceIn(kOfFields, alignment, 0); }

Qt::Alignment AlignmentOf(const Value& value) {
  const int number = NumberWithin(value, 0, kOfFields.size() - 1, "Alignment");
  return kOfFields.at(static_cast<std::size_t>(number)) | Qt::AlignVCenter;
}

// Models return the flags as themselves or as a plain number.
int CellAlignmentNumber(const QVariant& alignment) {
  if (!alignment.isValid()) return kAlignLeft;
  const auto flags = alignment.metaType() == QMetaType::fromType<Qt::Alignment>()
                         ? alignment.value<Qt::Alignment>()
                         : Qt::Alignment(alignment.toInt());
  return PlaceIn(kAcross, flags, 0) * static_cast<int>(kDown.size()) + PlaceIn(kDown, flags, 1);
}

QVariant CellAlignmentOf(const Value& value) {
  const auto number = static_cast<std::size_t>(NumberWithin(value, 0, kGeneral, "ColAlignment"));
  if (number == kGeneral) return {};
  const Qt::Alignment alignment =
      kAcross.at(number / kDown.size()) | kDown.at(number % kDown.size());
  return static_cast<int>(alignment);
}

}  // namespace kel
