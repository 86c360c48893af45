#include "engine/CPrint.h"

#include <filesystem>
#include <span>
#include <system_error>
#include <utility>
#include <vector>

#include "common/file.h"
#include "common/host.h"
#include "common/temp_folder.h"
#include "common/text_cells.h"
#include "engine/file_to_printer.h"
#include "engine/object_grid.h"
#include "engine/page_file_writer.h"
#include "engine/page_format.h"
#include "engine/page_range.h"
#include "engine/print_files.h"
#include "engine/print_settings.h"
#include "engine/report_caption.h"
#include "engine/report_job.h"
#include "engine/report_layout.h"
#include "toolkit/CZURDLL.h"
#include "toolkit/wait_scope.h"

namespace kel {

namespace {

std::vector<Cells> WidthsOf(const Value& col_width) {
  std::vector<Cells> widths;
  for (const Value& entry : col_width.ToArray()) widths.push_back(entry.ToInt32());
  return widths;
}

std::filesystem::path RangeFile() { return TempFolder() / kPageRangeFileName; }

// Without a temporary folder there is no such file, and the creation has told so.
std::string PathOrEmpty(std::filesystem::path (*path)()) {
  try {
    return path().string();
  } catch (const Error&) {
    return {};
  }
}

// The part of a grid that a caller asked for.
struct CallerRange {
  std::optional<std::int32_t> row1;
  std::optional<std::int32_t> col1;
  std::optional<std::int32_t> row2;
  std::optional<std::int32_t> col2;
};

ReportRange WholeRange(GridSource& grid, const CallerRange& asked, PageNumber first_page) {
  return {asked.row1.value_or(0), asked.col1.value_or(0), asked.row2 ? *asked.row2 : grid.LastRow(),
          asked.col2 ? *asked.col2 : grid.LastCol(), first_page};
}

template <typename Port>
Port& Required(const std::shared_ptr<Port>& port, const char* what) {
  if (port) return *port;
  throw Error(error_number::kPrinterError, std::string("this program has no ") + what);
}

}  // namespace

struct CPrint::Impl {
  std::int32_t pages = 0;
  PageNumber current_page = 1;
  Value col_width = "";
  Value report_title = "";
  Value page_title = "";
  bool rebuild = true;
  PrintSettings settings;
  std::optional<Error> last_error;
  std::optional<ReportSnapshot> prepared;  // the report that a preview handed back
  bool range_copied = false;               // the page-range file is the one to print

  // Runs the body of a public operation. A failure becomes LastError and goes down the common
  // error path under the operation's name; nothing is thrown.
  template <typename Body>
  void Run(std::string_view operation, Body body);

  void LoadSettings();
  void PrepareReport(GridSource& grid, const ReportRange& range);
  void PrepareWhenDue(GridSource& grid, const CallerRange& range, bool ask_start_page);
  void CopyPageRange(PageRange range);
  void PrintReport();
  void PrintKelFile();
  std::filesystem::path WholeReport() const;
  // Prints a page file in the current mode.
  void PrintPages(const std::filesystem::path& file);
  void SendToPort(const std::filesystem::path& file);
  bool SendToSystem(const std::filesystem::path& file, Links links, const std::string& title);
  std::string Title() const;  // of the prepared report, for its print job
  void BuildPrintFiles();
  ReportSnapshot Snapshot() const;
  // The same, where there must be a report.
  ReportSnapshot Prepared() const;
  // The same, which later jobs do not change.
  ReportSnapshot Held() const;
};

template <typename Body>
void CPrint::Impl::Run(std::string_view operation, Body body) {
  last_error.reset();
  try {
    body();
  } catch (...) {
    last_error = CaughtFailure();
    SharedToolkit().ReportFailure(*last_error, "DLL." + std::string(operation));
  }
}

void CPrint::Impl::LoadSettings() {
  const std::optional<Error> failure = LoadPrintSettings(*CurrentHost().settings, settings);
  if (failure) throw Error(*failure);
}

CPrint::CPrint() : impl_(std::make_unique<Impl>()) {
  impl_->Run("CPrint", [&] {
    PrepareTempFolder();
    SharedToolkit();  // at its making it empties the folder, too: not later, among this job's files
    impl_->LoadSettings();
  });
}

CPrint::CPrint(const ReportSnapshot& report) : CPrint() {
  impl_->settings = report.settings;
  impl_->col_width = report.col_width;
  impl_->pages = report.job.page_count;
  impl_->prepared = report;
  impl_->rebuild = false;
}

CPrint::~CPrint() = default;

void CPrint::PrepareReport(Object& Grid, const std::int32_t& Row1, const std::int32_t& Col1,
                           const std::int32_t& Row2, const std::int32_t& Col2,
                           const PageNumber& StartPNo) {
  ObjectGrid grid(Grid);
  PrepareReport(grid, Row1, Col1, Row2, Col2, StartPNo);
}

void CPrint::PrepareReport(GridSource& Grid, const std::int32_t& Row1, const std::int32_t& Col1,
                           const std::int32_t& Row2, const std::int32_t& Col2,
                           const PageNumber& StartPNo) {
  impl_->Run("PrepareReport", [&] {
    impl_->PrepareReport(Grid, {Row1, Col1, Row2, Col2, FirstPageOf(StartPNo)});
  });
}

void CPrint::Impl::PrepareReport(GridSource& grid, const ReportRange& range) {
  const std::optional<std::int32_t> end =
      range.row2 == kLastRow ? std::nullopt : std::optional(range.row2);
  const ReportJob job;
  const WaitScope wait("Preparing Pages...", range.row1, end);
  current_page = range.first_page;

  // The caller may change a setting while the wait window lets events through; this job keeps its
  // own.
  const PrintSettings job_settings = settings;
  const std::vector<Cells> widths = WidthsOf(col_width);
  const ReportTexts texts = {TitleLines(report_title), CurrentHost().clock->Stamp()};
  const auto write_pages = [&](PageFileWriter& writer) {
    return LayOutReport(grid, widths, job_settings, range, texts, writer, [&](PageNumber page) {
      current_page = page;
      wait.Step();
    });
  };
  current_page = WriteReport(job_settings, LineWidth(widths), range.first_page, write_pages);
  pages = CurrentJob().page_count;
  rebuild = false;
  range_copied = false;
  prepared.reset();
}

void CPrint::PrintPreview(Object& Grid, std::optional<std::int32_t> Row1,
                          std::optional<std::int32_t> Col1, std::optional<std::int32_t> Row2,
                          std::optional<std::int32_t> Col2, std::int32_t Style, bool AskStartPNo) {
  ObjectGrid grid(Grid);
  PrintPreview(grid, Row1, Col1, Row2, Col2, Style, AskStartPNo);
}

void CPrint::PrintPreview(GridSource& Grid, std::optional<std::int32_t> Row1,
                          std::optional<std::int32_t> Col1, std::optional<std::int32_t> Row2,
                          std::optional<std::int32_t> Col2, std::int32_t Style, bool AskStartPNo) {
  impl_->Run("PrintPreview", [&] {
    impl_->PrepareWhenDue(Grid, {Row1, Col1, Row2, Col2}, AskStartPNo);
    const ShowStyle style = Style == 0 ? ShowStyle::kModeless : ShowStyle::kModal;
    CurrentReportHost().windows->ShowPreview(impl_->Held(), style);
  });
}

void CPrint::PreparePrint(Object& Grid, std::optional<std::int32_t> Row1,
                          std::optional<std::int32_t> Col1, std::optional<std::int32_t> Row2,
                          std::optional<std::int32_t> Col2, bool AskStartPNo) {
  ObjectGrid grid(Grid);
  PreparePrint(grid, Row1, Col1, Row2, Col2, AskStartPNo);
}

void CPrint::PreparePrint(GridSource& Grid, std::optional<std::int32_t> Row1,
                          std::optional<std::int32_t> Col1, std::optional<std::int32_t> Row2,
                          std::optional<std::int32_t> Col2, bool AskStartPNo) {
  impl_->Run("PreparePrint", [&] {
    impl_->PrepareWhenDue(Grid, {Row1, Col1, Row2, Col2}, AskStartPNo);
    const std::int32_t page_count = impl_->Prepared().job.page_count;
    impl_->range_copied = false;
    const std::optional<PageRange> range = CurrentReportHost().windows->AskPageRange(page_count);
    if (!range) return;
    if (page_count != range->to || impl_->settings.start_page != range->from) {
      impl_->CopyPageRange(*range);
    }
    impl_->PrintReport();
  });
}

void CPrint::Impl::PrepareWhenDue(GridSource& grid, const CallerRange& range, bool ask_start_page) {
  JobValues& job = CurrentJob();
  const PageNumber first_page_before = job.first_page;
  if (ask_start_page) {
    CurrentReportHost().windows->AskStartPage(job);
    if (job.start_page_changed) rebuild = true;
  }
  if (!rebuild) return;
  try {
    PrepareReport(grid, WholeRange(grid, range, FirstPageOf(job.first_page)));
  } catch (...) {
    // A first page that the report cannot begin with is not kept for the next one.
    job.first_page = first_page_before;
    job.start_page_changed = false;
    throw;
  }
}

void CPrint::CopyPageRange(PageNumber From, PageNumber To) {
  impl_->Run("CopyPageRange", [&] { impl_->CopyPageRange({From, To}); });
}

void CPrint::Impl::CopyPageRange(PageRange range) {
  const ReportJob job;
  const WaitScope wait("Printing Pages (" + std::to_string(range.from) + "-" +
                       std::to_string(range.to) + ")");
  const ReportSnapshot report = Prepared();
  const auto& offsets = report.job.page_offsets;
  CopyPages(report.page_file, RangeFile(), range.from, range.to, report.job.page_length,
            offsets ? std::span(*offsets) : std::span<const std::uint64_t>());
  range_copied = true;
}

void CPrint::Impl::PrintReport() {
  const std::filesystem::path file = range_copied ? RangeFile() : WholeReport();
  range_copied = false;
  PrintPages(file);
}

// One that an earlier program left is a report, too.
std::filesystem::path CPrint::Impl::WholeReport() const {
  std::filesystem::path file = Snapshot().page_file;
  std::error_code unreadable;
  if (std::filesystem::exists(file, unreadable)) return file;
  throw Error(error_number::kFileNotFound, "no report has been prepared");
}

void CPrint::Impl::PrintPages(const std::filesystem::path& file) {
  if (settings.mode == kTextMode) {
    SendToPort(file);
  } else {
    SendToSystem(file, Links::kRefuse, Title());
  }
}

void CPrint::Impl::SendToPort(const std::filesystem::path& file) {
  PrinterPort& port = Required(CurrentReportHost().printer_port, "printer port");
  if (TrimBlanks(settings.port).empty()) settings.port = kDefaultPort;
  SettingsStore& store = *CurrentHost().settings;
  // The files on disk may be of other settings, or of another process of this user.
  if (!PrintFilesAreCurrent(TempFolder(), CodesFor(settings, store), settings.port)) {
    BuildPrintFiles();
  }
  PortJob job;
  job.port = settings.port;
  job.title = Title();
  job.code_page = store.Read(kTextModeSection, kCodePageKey, "");
  job.parts = {{TempFolder() / kSetUpFileName}, {file, true}, {TempFolder() / kResetFileName}};
  port.Send(job);
}

// For want of a title nothing stays unprinted.
std::string CPrint::Impl::Title() const {
  std::string caption;
  try {
    const ReportSnapshot report = Snapshot();
    caption = CaptionOf(report.page_file, report.job);
  } catch (const Error&) {
    caption.clear();
  }
  return caption.empty() ? std::string(kApplicationTitle) : caption;
}

void CPrint::Impl::BuildPrintFiles() {
  kel::BuildPrintFiles(TempFolder(), CodesFor(settings, *CurrentHost().settings), settings.port);
}

bool CPrint::Impl::SendToSystem(const std::filesystem::path& file, Links links,
                                const std::string& title) {
  SystemPrinter& printer = Required(CurrentReportHost().system_printer, "printer");
  const ReportJob job;
  const WaitScope wait = WaitScope::Stoppable("Printing Pages...");
  return PrintThroughSystem(file, links, title, settings, printer, [&] { return wait.Step(); });
}

void CPrint::PrintReport() {
  impl_->Run("PrintReport", [&] { impl_->PrintReport(); });
}

void CPrint::PrintKelFile() {
  impl_->Run("PrintKelFile", [&] { impl_->PrintKelFile(); });
}

void CPrint::Impl::PrintKelFile() {
  const std::filesystem::path file = WholeReport();
  try {
    PrintPages(file);
  } catch (const Error&) {
    if (settings.mode != kTextMode) throw;
    BuildPrintFiles();
    SendToPort(file);
  }
}

bool CPrint::FileToPrinter(const std::string& Filename) {
  bool printed = false;
  impl_->Run("FileToPrinter", [&] {
    printed = impl_->SendToSystem(Filename, Links::kFollow,
                                  std::filesystem::path(Filename).filename().string());
  });
  return printed;
}

void CPrint::ShowSetup() {
  impl_->Run("ShowSetup", [] { CurrentReportHost().windows->ShowSetup(); });
}

ReportSnapshot CPrint::Snapshot() const { return impl_->Snapshot(); }

ReportSnapshot CPrint::Impl::Prepared() const {
  ReportSnapshot report = Snapshot();
  if (report.job.page_length < 1) {
    throw Error(error_number::kInvalidProcedureCall, "no report has been prepared");
  }
  return report;
}

ReportSnapshot CPrint::Impl::Held() const {
  ReportSnapshot report = Prepared();
  if (!report.held) report.held = HeldFile::Hold(report.page_file);
  if (report.held) report.page_file = report.held->Path();
  return report;
}

ReportSnapshot CPrint::Impl::Snapshot() const {
  return prepared ? *prepared
                  : ReportSnapshot{PathOrEmpty(ReportPageFile), CurrentJob(), settings, col_width,
                                   nullptr};
}

std::string CPrint::GetKelFile() const { return PathOrEmpty(ReportPageFile); }

std::string CPrint::PageRangeFile() const { return PathOrEmpty(RangeFile); }

void CPrint::Refresh() {
  impl_->Run("Refresh", [&] { impl_->LoadSettings(); });
}

const std::optional<Error>& CPrint::LastError() const { return impl_->last_error; }

std::int32_t CPrint::Pages() const { return impl_->pages; }
void CPrint::Pages(std::int32_t pages) { impl_->pages = pages; }

PageNumber CPrint::CurrentPage() const { return impl_->current_page; }
void CPrint::CurrentPage(PageNumber page) { impl_->current_page = page; }

const Value& CPrint::ColWidth() const { return impl_->col_width; }
void CPrint::ColWidth(Value widths) { impl_->col_width = std::move(widths); }

const Value& CPrint::ReportTitle() const { return impl_->report_title; }
void CPrint::ReportTitle(Value lines) { impl_->report_title = std::move(lines); }

const Value& CPrint::PageTitle() const { return impl_->page_title; }
void CPrint::PageTitle(Value title) { impl_->page_title = std::move(title); }

bool CPrint::ReBuild() const { return impl_->rebuild; }
void CPrint::ReBuild(bool rebuild) { impl_->rebuild = rebuild; }

bool CPrint::Portrait() const { return impl_->settings.portrait; }
void CPrint::Portrait(bool portrait) { impl_->settings.portrait = portrait; }

float CPrint::PageHeight() const { return impl_->settings.page_height; }
void CPrint::PageHeight(float inches) { impl_->settings.page_height = inches; }

float CPrint::PageWidth() const { return impl_->settings.page_width; }
void CPrint::PageWidth(float inches) { impl_->settings.page_width = inches; }

std::int32_t CPrint::LeftMargin() const { return impl_->settings.left_margin; }
void CPrint::LeftMargin(std::int32_t characters) { impl_->settings.left_margin = characters; }

std::int32_t CPrint::RightMargin() const { return impl_->settings.right_margin; }
void CPrint::RightMargin(std::int32_t characters) { impl_->settings.right_margin = characters; }

std::int32_t CPrint::BottomMargin() const { return impl_->settings.bottom_margin; }
void CPrint::BottomMargin(std::int32_t lines) { impl_->settings.bottom_margin = lines; }

std::int32_t CPrint::TopMargin() const { return impl_->settings.top_margin; }
void CPrint::TopMargin(std::int32_t lines) { impl_->settings.top_margin = lines; }

bool CPrint::PrintDateTime() const { return impl_->settings.print_date_time; }
void CPrint::PrintDateTime(bool print) { impl_->settings.print_date_time = print; }

bool CPrint::PrintColumnDivider() const { return impl_->settings.print_column_divider; }
void CPrint::PrintColumnDivider(bool print) { impl_->settings.print_column_divider = print; }

std::int32_t CPrint::Lines() const { return impl_->settings.lines; }
void CPrint::Lines(std::int32_t lines) { impl_->settings.lines = lines; }

std::int32_t CPrint::Cols() const { return impl_->settings.cols; }
void CPrint::Cols(std::int32_t characters) { impl_->settings.cols = characters; }

PageNumber CPrint::StartPage() const { return impl_->settings.start_page; }
void CPrint::StartPage(PageNumber page) { impl_->settings.start_page = page; }

PageNumber CPrint::EndPage() const { return impl_->settings.end_page; }
void CPrint::EndPage(PageNumber page) { impl_->settings.end_page = page; }

const std::string& CPrint::UnderLineChar() const { return impl_->settings.under_line_char; }
void CPrint::UnderLineChar(std::string text) { impl_->settings.under_line_char = std::move(text); }

const std::string& CPrint::Font() const { return impl_->settings.font; }
void CPrint::Font(std::string name) { impl_->settings.font = std::move(name); }

float CPrint::FontSize() const { return impl_->settings.font_size; }
void CPrint::FontSize(float points) { impl_->settings.font_size = points; }

const std::string& CPrint::PrinterDevice() const { return impl_->settings.printer_device; }
void CPrint::PrinterDevice(std::string name) { impl_->settings.printer_device = std::move(name); }

const std::string& CPrint::Port() const { return impl_->settings.port; }
void CPrint::Port(std::string port) { impl_->settings.port = std::move(port); }

const std::string& CPrint::Mode() const { return impl_->settings.mode; }
void CPrint::Mode(std::string mode) { impl_->settings.mode = std::move(mode); }
}  // namespace kel
