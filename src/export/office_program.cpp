#include "export/office_program.h"

namespace kel {
namespace {

constexpr const char* kTextModeFont = "Courier New";
constexpr int kTextModeSize = 10;  // points

}  // namespace

OfficeProgram::OfficeProgram(OfficePrograms& programs, std::string_view name, Discard discard)
    : application_(programs.CreateObject(name)), discard_(discard) {}

OfficeProgram::~OfficeProgram() {
  if (handed_over_) return;
  try {
    discard_(application_);
  } catch (...) {
    // What made the export fail is what the caller has to hear of; a program that has died
    // refuses this, too.
    return;
  }
}

double OfficeProgram::InchesToPoints(double inches) const {
  return application_.Call("InchesToPoints", {inches}).ToDouble();
}

void OfficeProgram::HandOver(Handover handover) {
  if (handover == Handover::kOpen) {
    application_.Put("Visible", true);
  } else {
    application_.Call("Quit");
  }
  handed_over_ = true;
}

void SetReportFont(const LateBound& range, const PrintSettings& settings) {
  const bool text_mode = settings.mode == kTextMode;
  const LateBound font = range.Get("Font");
  font.Put("Name", text_mode ? Value(kTextModeFont) : Value(settings.font));
  font.Put("Size", text_mode ? Value(kTextModeSize) : Value(double{settings.font_size}));
}

}  // namespace kel
