// The report engine.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "common/error.h"
#include "common/job_values.h"
#include "common/object.h"
#include "common/value.h"
#include "engine/grid_source.h"
#include "engine/report_windows.h"

namespace kel {

/// A report job: lays a range of a grid out into pages of fixed-pitch text in the report page file.
///
/// Set the column widths, titles and whatever print settings differ from the user's stored ones,
/// then prepare:
///
///     kel::CPrint print;
///     print.ColWidth(kel::Value::Array{6, 24, 12});
///     print.ReportTitle(kel::Value::Array{"ACME Traders", "2026-27"});
///     print.PrepareReport(grid, 0, 0, last_row, 2, 0);
///     if (print.LastError()) ...                        // nothing was lost; it says what and why
///     std::string file = print.GetKelFile();
///
/// or prepare and show in one call, which prepares only when it has to (ReBuild):
///
///     print.PrintPreview(grid);
///
/// No operation throws. A failure is kept in LastError, raised as the Error event of the shared
/// CZURDLL, shown and logged as every failure of the library is; the page file from before is then
/// still there. All objects of one thread share one temporary folder and one set of job values, so
/// one job is prepared at a time.
class CPrint {
 public:
  /// Empties the temporary folder of earlier work files and loads the stored print settings.
  CPrint();
  /// A job whose pages are prepared already, as a preview holds it: with its settings, and ReBuild
  /// False.
  explicit CPrint(const ReportSnapshot& report);
  ~CPrint();
  CPrint(const CPrint&) = delete;
  CPrint& operator=(const CPrint&) = delete;

  // Data of the job.

  /// Number of pages of the last prepared report.
  std::int32_t Pages() const;
  void Pages(std::int32_t pages);
  /// The page being written; after preparing, the number of the last page.
  PageNumber CurrentPage() const;
  void CurrentPage(PageNumber page);
  /// An array with one width in characters per grid column, counted from column 0. 0 or less
  /// leaves the column out.
  const Value& ColWidth() const;
  void ColWidth(Value widths);
  /// An array of lines, or one line, printed once above the first page's heading when the report
  /// starts at page 1.
  const Value& ReportTitle() const;
  void ReportTitle(Value lines);
  /// Kept for callers; the pages do not show it.
  const Value& PageTitle() const;
  void PageTitle(Value title);
  /// True when the page file must be written again before preview or printing.
  bool ReBuild() const;
  void ReBuild(bool rebuild);

  // Print settings. A set changes this object only; Refresh brings the stored value back.

  bool Portrait() const;
  void Portrait(bool portrait);
  /// Inches.
  float PageHeight() const;
  void PageHeight(float inches);
  float PageWidth() const;
  void PageWidth(float inches);
  /// Blank characters before each line.
  std::int32_t LeftMargin() const;
  void LeftMargin(std::int32_t characters);
  /// Characters kept free right of the line; counted in the page width.
  std::int32_t RightMargin() const;
  void RightMargin(std::int32_t characters);
  /// Lines at the foot of each page; the last is the page end. With 0 no page end is written.
  std::int32_t BottomMargin() const;
  void BottomMargin(std::int32_t lines);
  /// Empty lines at the head of each page.
  std::int32_t TopMargin() const;
  void TopMargin(std::int32_t lines);
  bool PrintDateTime() const;
  void PrintDateTime(bool print);
  /// "|" between columns in place of a blank.
  bool PrintColumnDivider() const;
  void PrintColumnDivider(bool print);
  /// Lines of a page between its margins, page line and foot included.
  std::int32_t Lines() const;
  void Lines(std::int32_t lines);
  /// Characters per line that the printer supports.
  std::int32_t Cols() const;
  void Cols(std::int32_t characters);
  PageNumber StartPage() const;
  void StartPage(PageNumber page);
  /// The last page to prepare; 10000 unless set, and never stored.
  PageNumber EndPage() const;
  void EndPage(PageNumber page);
  /// Rule lines are made of its first character; "-" when empty.
  const std::string& UnderLineChar() const;
  void UnderLineChar(std::string text);
  /// The font in Windows mode, the name of the printer's character set in text mode.
  const std::string& Font() const;
  void Font(std::string name);
  /// Points.
  float FontSize() const;
  void FontSize(float points);
  const std::string& PrinterDevice() const;
  void PrinterDevice(std::string name);
  const std::string& Port() const;
  void Port(std::string port);
  /// "DOS" for text-mode printing; any other value prints through the system's printer.
  const std::string& Mode() const;
  void Mode(std::string mode);

  // Operations.

  /// Lays rows `Row1` to `Row2`, columns `Col1` to `Col2` out into the report page file. The first
  /// page gets the number `StartPNo`, or 1 for 0. Preparing ends with page `EndPage`. Fails with
  /// Error 9 for rows or columns that the grid or ColWidth does not have, 5 for settings that no
  /// page can be made with (too few Lines: the description names the least that would do), and
  /// with what the grid or the disk says.
  void PrepareReport(Object& Grid, const std::int32_t& Row1, const std::int32_t& Col1,
                     const std::int32_t& Row2, const std::int32_t& Col2,
                     const PageNumber& StartPNo);
  void PrepareReport(GridSource& Grid, const std::int32_t& Row1, const std::int32_t& Col1,
                     const std::int32_t& Row2, const std::int32_t& Col2,
                     const PageNumber& StartPNo);

  /// Prepares the report when ReBuild is set and shows it (frmPV): beside the caller's windows with
  /// `Style` 0, until it is closed with 1. Rows and columns that are left out mean the whole grid.
  /// With `AskStartPNo` the number of the first page is asked for before, and a changed number
  /// makes the report be prepared anew. What fails in preparing is not shown.
  void PrintPreview(Object& Grid, std::optional<std::int32_t> Row1 = std::nullopt,
                    std::optional<std::int32_t> Col1 = std::nullopt,
                    std::optional<std::int32_t> Row2 = std::nullopt,
                    std::optional<std::int32_t> Col2 = std::nullopt, std::int32_t Style = 0,
                    bool AskStartPNo = false);
  void PrintPreview(GridSource& Grid, std::optional<std::int32_t> Row1 = std::nullopt,
                    std::optional<std::int32_t> Col1 = std::nullopt,
                    std::optional<std::int32_t> Row2 = std::nullopt,
                    std::optional<std::int32_t> Col2 = std::nullopt, std::int32_t Style = 0,
                    bool AskStartPNo = false);

  /// Prepares the report as PrintPreview does, asks which pages to print (frmPrint) and prints
  /// them as PrintReport does.
  void PreparePrint(Object& Grid, std::optional<std::int32_t> Row1 = std::nullopt,
                    std::optional<std::int32_t> Col1 = std::nullopt,
                    std::optional<std::int32_t> Row2 = std::nullopt,
                    std::optional<std::int32_t> Col2 = std::nullopt, bool AskStartPNo = false);
  void PreparePrint(GridSource& Grid, std::optional<std::int32_t> Row1 = std::nullopt,
                    std::optional<std::int32_t> Col1 = std::nullopt,
                    std::optional<std::int32_t> Row2 = std::nullopt,
                    std::optional<std::int32_t> Col2 = std::nullopt, bool AskStartPNo = false);

  /// Copies pages `From` to `To`, counted from 1 at the start of the report page file, into the
  /// page-range file, which has the same format.
  void CopyPageRange(PageNumber From, PageNumber To);

  /// Prints the page range that was copied last, if one was copied since the last printing, else
  /// the whole report page file: in text mode ("DOS") through the printer port, in any other mode
  /// through the system's printer. Text mode returns at once and sends in the background; what
  /// fails there is in the error log. Fails with Error 482 for a printer or port that is not there
  /// or refuses.
  void PrintReport();
  /// Prints the whole report page file without asking. Where text mode fails, its print files are
  /// built anew and it is tried once more.
  void PrintKelFile();
  /// Prints a text file, which may hold the codes of a page file, through the system's printer: the
  /// one named PrinterDevice, else the default one. True when the whole file was sent and the
  /// document ended; False when it failed (LastError), was stopped, or the PDF printer was given no
  /// file. Published quirks: size and bold hold for whole lines, and the removal of codes takes a
  /// digit of an underlined text that begins with one for part of the code.
  bool FileToPrinter(const std::string& Filename);
  /// Opens the printer setup (frmSetup) until it is closed. What is saved there holds for this
  /// object after Refresh.
  void ShowSetup();

  /// Full path of the report page file; empty when there is no temporary folder.
  std::string GetKelFile() const;

  /// Loads the stored print settings. A stored text that cannot be read as its setting's type
  /// leaves the published default in force and is told by LastError (13).
  void Refresh();

  /// The failure of the last operation; nothing when it succeeded.
  const std::optional<Error>& LastError() const;

  /// The prepared report as a preview holds it.
  ReportSnapshot Snapshot() const;

  /// Full path of the page-range file.
  std::string PageRangeFile() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kel
