// A word processor or spreadsheet program while a report is exported with it.
#pragma once

#include <string_view>

#include "engine/print_settings.h"
#include "export/automation_office.h"
#include "export/late_bound.h"

namespace kel {

/// A program of our own making. Unless it was handed over, it is quit when the object goes.
class OfficeProgram {
 public:
  /// Quits a program, whatever it holds unsaved, without asking anyone: nobody sees the question.
  using Discard = void (*)(const LateBound& application);

  OfficeProgram(OfficePrograms& programs, std::string_view name, Discard discard);
  ~OfficeProgram();
  OfficeProgram(const OfficeProgram&) = delete;
  OfficeProgram& operator=(const OfficeProgram&) = delete;

  const LateBound& Application() const { return application_; }
  double InchesToPoints(double inches) const;
  /// Shows the program, which is the user's from now on (kOpen), or quits it.
  void HandOver(Handover handover);

 private:
  LateBound application_;
  Discard discard_;
  bool handed_over_ = false;
};

/// Sets the "Font" of a range of text or cells to that of the report.
void SetReportFont(const LateBound& range, const PrintSettings& settings);

/// The left margin of documents and sheets, whose other margins are 0.
inline constexpr double kLeftMarginInches = 0.25;

}  // namespace kel
