// CZURDLL: places on the screen, keys and time.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

#include "common/host.h"
#include "common/object.h"
#include "common/twips.h"
#include "toolkit/CZURDLL_p.h"
#include "toolkit/screen_placement.h"

namespace kel {
namespace {

constexpr double kMillisecondsPerSecond = 1000;

Twips TwipsIn(Object& form, const char* name) { return Member(form, name).Get().ToInt32(); }

void AlignInWorkArea(Object& form, AlignObject align) {
  const RECT place =
      AlignedRect(CurrentHost().desktop->WorkArea(), PixelsOf(TwipsIn(form, "Width")),
                  PixelsOf(TwipsIn(form, "Height")), align);
  Member(form, "Left").Put(TwipsOf(place.Left));
  Member(form, "Top").Put(TwipsOf(place.Top));
}

// The start of a form's extent so that it stands centred over that of its parent.
double CenteredStart(Object& form, Object& parent, const char* start, const char* extent) {
  const double room = static_cast<double>(TwipsIn(parent, extent)) - TwipsIn(form, extent);
  return std::trunc(TwipsIn(parent, start) + room / 2);
}

}  // namespace

void CZURDLL::AlignForm(Object& Frm, AlignObject Align) {
  Guarded("DLL.AlignForm", [&] { AlignInWorkArea(Frm, Align); });
}

void CZURDLL::Center(Object& Frm, const Value& Parent) {
  Guarded("DLL.Center", [&] {
    const bool on_screen =
        Parent.IsMissing() || Parent.IsEmpty() || (Parent.IsObject() && !Parent.Pointer());
    if (on_screen) return AlignInWorkArea(Frm, zurAlignCenter);
    Object& parent = Parent.ToObject();
    const Value left = CenteredStart(Frm, parent, "Left", "Width");
    const Value top = CenteredStart(Frm, parent, "Top", "Height");
    Member(Frm, "Left").Put(left.ToInt32());
    Member(Frm, "Top").Put(top.ToInt32());
  });
}

std::int16_t CZURDLL::GetSteps(const RECT& r1, const RECT& r2, double Fraction) {
  return Guarded("DLL.GetSteps", std::int16_t{0}, [&] { return WireSteps(r1, r2, Fraction); });
}

void CZURDLL::DrawWireRects(const RECT& rFrom, const RECT& rTo, std::int16_t Steps,
                            std::int32_t mSeconds) {
  Guarded("DLL.DrawWireRects", [&] {
    const std::chrono::milliseconds pause(std::max(mSeconds, 0));
    if (Steps > 0) CurrentHost().desktop->DrawWireRects(rFrom, rTo, Steps, pause);
  });
}

void CZURDLL::SendKey(std::int32_t KeyCode, std::int32_t Shift) {
  Guarded("DLL.SendKey", [&] { CurrentHost().desktop->SendKey(KeyCode, Shift); });
}

void CZURDLL::ShowTopMost(std::int64_t hWnd) {
  Guarded("DLL.ShowTopMost", [&] { CurrentHost().desktop->ShowTopMost(hWnd); });
}

void CZURDLL::Delay(double Seconds) {
  Guarded("DLL.Delay", [&] {
    const double time = std::max(Seconds, 0.0) * kMillisecondsPerSecond;
    if (!(time <= std::numeric_limits<std::int32_t>::max())) {
      throw Error(error_number::kOverflow, "Overflow: Delay is for 24 days at most");
    }
    CurrentHost().desktop->Delay(std::chrono::milliseconds(std::llround(time)));
  });
}

}  // namespace kel
