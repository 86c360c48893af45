// Reports as documents of "Word.Application".
#include <array>
#include <optional>

#include "common/file.h"
#include "export/automation_office.h"
#include "export/code_free_copy.h"
#include "export/late_bound.h"
#include "export/office_program.h"
#include "export/replaced_file.h"

namespace kel {
namespace {

constexpr float kWidestPage = 22;  // inches; more than the word processor takes
constexpr int kDoNotSaveChanges = 0;

void QuitWord(const LateBound& word) { word.Call("Quit", {kDoNotSaveChanges}); }

class DocumentMaker {
 public:
  DocumentMaker(OfficePrograms& programs, const ReportSnapshot& report,
                const std::filesystem::path& target, Handover handover)
      : programs_(programs), report_(report), handover_(handover), file_(target) {}

  /// False when stopped.
  bool Run(ExportProgress& progress);

 private:
  void CopyText();
  void Start() { word_.emplace(programs_, "Word.Application", &QuitWord); }
  void Open() { Documents().Call("Open", {PathText(file_.Path())}); }
  void SetFont();
  void SetTopMargin() { PageSetup().Put("TopMargin", 0); }
  void SetBottomMargin() { PageSetup().Put("BottomMargin", 0); }
  void SetLeftMargin() { PutInches("LeftMargin", kLeftMarginInches); }
  void SetRightMargin() { PageSetup().Put("RightMargin", 0); }
  void SetPageSize();
  void Save() { Documents().Call("Save"); }
  void HandOver();

  LateBound Documents() const { return word_->Application().Get("Documents"); }
  LateBound PageSetup() const { return Documents().Item(1).Get("PageSetup"); }
  void PutInches(std::string_view member, double inches) const;

  OfficePrograms& programs_;
  const ReportSnapshot& report_;
  Handover handover_;
  ReplacedFile file_;
  std::optional<OfficeProgram> word_;  // goes first: it may have the file open
};

bool DocumentMaker::Run(ExportProgress& progress) {
  using Operation = void (DocumentMaker::*)();
  static constexpr std::array<Operation, 11> kOperations = {
      &DocumentMaker::CopyText,      &DocumentMaker::Start,
      &DocumentMaker::Open,          &DocumentMaker::SetFont,
      &DocumentMaker::SetTopMargin,  &DocumentMaker::SetBottomMargin,
      &DocumentMaker::SetLeftMargin, &DocumentMaker::SetRightMargin,
      &DocumentMaker::SetPageSize,   &DocumentMaker::Save,
      &DocumentMaker::HandOver,
  };
  progress.Begin(kOperations.size());
  for (const Operation operation : kOperations) {
    (this->*operation)();
    const bool done = operation == kOperations.back();
    // Once the program is the user's, or gone, nothing is left to stop.
    if (!progress.Step() && !done) return false;
  }
  return true;
}

void DocumentMaker::CopyText() {
  OutputFile text(file_.Path());
  CopyWithoutCodes(report_.page_file, [&](std::string_view lines) { text.Write(lines); });
  file_.SetAside();
  text.Commit();
}

void DocumentMaker::SetFont() {
  const LateBound document = word_->Application().Get("ActiveDocument");
  SetReportFont(LateBound(document.Call("Range")), report_.settings);
}

void DocumentMaker::SetPageSize() {
  PutInches("PageHeight", report_.settings.page_height);
  if (report_.settings.page_width <= kWidestPage) {
    PutInches("PageWidth", report_.settings.page_width);
  }
}

void DocumentMaker::HandOver() {
  word_->HandOver(handover_);
  file_.Commit();
}

void DocumentMaker::PutInches(std::string_view member, double inches) const {
  const double points = word_->InchesToPoints(inches);
  PageSetup().Put(member, points);
}

}  // namespace

bool AutomationOffice::MakeDocument(const ReportSnapshot& report,
                                    const std::filesystem::path& target, Handover handover,
                                    ExportProgress& progress) {
  return DocumentMaker(*programs_, report, target, handover).Run(progress);
}

}  // namespace kel
