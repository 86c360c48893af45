#include "export/workbook.h"

#include <xlsxwriter.h>

#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <system_error>
#include <utility>

#include "common/error.h"
#include "export/sheet_texts.h"

namespace kel {
namespace {

// The library writes numbers by printf, which follows the locale that the host program has set.
class PlainNumbers {
 public:
  PlainNumbers() : before_(::uselocale(Plain())) {}
  ~PlainNumbers() { ::uselocale(before_); }
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;

 private:
  static locale_t Plain() {
    static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
    if (plain == nullptr) throw Error(error_number::kOutOfMemory, "out of memory");
    return plain;
  }

  locale_t before_;
};

[[noreturn]] void Fail(int system_error, const std::filesystem::path& path) {
  throw Error::FromSystem(system_error != 0 ? system_error : EIO, "cannot write " + path.string());
}

void Check(lxw_error failure, const std::filesystem::path& path) {
  if (failure == LXW_NO_ERROR) return;
  const int system_error = errno;
  const bool is_of_file = failure >= LXW_ERROR_CREATING_XLSX_FILE && failure <= LXW_ERROR_ZIP_CLOSE;
  if (is_of_file && system_error != 0) Fail(system_error, path);
  throw Error(failure == LXW_ERROR_MEMORY_MALLOC_FAILED ? error_number::kOutOfMemory
                                                        : error_number::kInternalError,
              "cannot write " + path.string() + ": " + lxw_strerror(failure));
}

// What is the same for cells that differ in their number format alone.
std::size_t IndexOf(CellLook look) {
  return (look.bold ? 1U : 0U) | (look.underline ? 2U : 0U) | (look.at_right ? 4U : 0U);
}

}  // namespace

Workbook::Workbook(const std::filesystem::path& path, WorkbookFont font)
    : path_(path), font_(std::move(font)), folder_(path.parent_path().string()) {
  if (folder_.empty()) folder_ = ".";
  // Where the library cannot write, it would tell standard error and take another folder.
  std::FILE* const file = std::fopen(path_.c_str(), "wb");
  if (file == nullptr) Fail(errno, path_);
  static_cast<void>(std::fclose(file));
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;
  options.tmpdir = folder_.data();
  book_ = workbook_new_opt(path_.c_str(), &options);
  if (book_ == nullptr) {
    Free();
    throw Error(error_number::kOutOfMemory, "out of memory");
  }
  // The workbook's first format is that of every cell without one; columns are measured in its
  // digits.
  lxw_format* const normal = STAILQ_FIRST(book_->formats);
  format_set_font_name(normal, font_.name.c_str());
  format_set_font_size(normal, font_.size);
}

Workbook::~Workbook() { Free(); }

void Workbook::Free() {
  if (book_ != nullptr) {
    // The library closes them only when it makes the file.
    for (lxw_worksheet* const sheet : sheets_) {
      static_cast<void>(std::fclose(sheet->optimize_tmpfile));
    }
    lxw_workbook_free(book_);
    book_ = nullptr;
  }
  std::error_code ignored;
  if (!whole_) std::filesystem::remove(path_, ignored);
}

void Workbook::SetTitle(const std::string& title) {
  text_ = title;
  lxw_doc_properties properties{};
  properties.title = text_.data();
  Check(workbook_set_properties(book_, &properties), path_);
}

void Workbook::AddSheet(const std::string& name, const SheetPage& page) {
  errno = 0;
  lxw_worksheet* const sheet = workbook_add_worksheet(book_, name.c_str());
  if (sheet == nullptr) Fail(errno, path_);
  sheets_.push_back(sheet);
  row_ = 0;
  if (page.portrait) {
    worksheet_set_portrait(sheet);
  } else {
    worksheet_set_landscape(sheet);
  }
  worksheet_set_paper(sheet, page.paper);
  worksheet_set_margins(sheet, page.left_margin, 0, 0, 0);
  sheet->margin_header = 0;  // the library's own functions take none that is 0
  sheet->margin_footer = 0;
  worksheet_fit_to_pages(sheet, 1, 1);
}

void Workbook::WriteText(std::int32_t column, std::string_view text, CellLook look) {
  text_.clear();
  AppendCellText(text_, text);
  Check(worksheet_write_string(sheets_.back(), static_cast<lxw_row_t>(row_),
                               static_cast<lxw_col_t>(column), text_.c_str(), Format({}, look)),
        path_);
}

bool Workbook::WriteNumber(std::int32_t column, double value, const std::string& number_format,
                           CellLook look) {
  lxw_format* const format = Format(number_format, look);
  if (format == nullptr) return false;
  Check(worksheet_write_number(sheets_.back(), static_cast<lxw_row_t>(row_),
                               static_cast<lxw_col_t>(column), value, format),
        path_);
  return true;
}

void Workbook::EndRow() {
  const PlainNumbers plain;
  lxw_worksheet* const sheet = sheets_.back();
  errno = 0;
  lxw_worksheet_write_single_row(sheet);
  if (std::ferror(sheet->optimize_tmpfile) != 0) Fail(errno, path_);
  ++row_;
}

void Workbook::SetColumns(const std::vector<Cells>& widths) {
  constexpr double kMostWidth = 255;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const auto column = static_cast<lxw_col_t>(i);
    const double width =
        widths[i] > 0 ? std::min(widths[i] * font_.digits_a_cell, kMostWidth) : LXW_DEF_COL_WIDTH;
    Check(worksheet_set_column(sheets_.back(), column, column, width, Format({}, {})), path_);
  }
}

void Workbook::Close() {
  RequireRoom();
  const PlainNumbers plain;
  errno = 0;
  const lxw_error failure = workbook_close(std::exchange(book_, nullptr));
  Check(failure, path_);
  whole_ = true;
}

// The library loses what it cannot write of a sheet without telling.
void Workbook::RequireRoom() {
  constexpr std::uintmax_t kFrame = std::uintmax_t{64} << 10;   // of a sheet, round its rows
  constexpr std::uintmax_t kMostZip = std::uintmax_t{3} << 30;  // without the 64 bit extension
  std::uintmax_t rows_of_all = 0;
  std::uintmax_t rows_of_one = 0;
  for (lxw_worksheet* const sheet : sheets_) {
    errno = 0;
    if (std::fflush(sheet->optimize_tmpfile) != 0) Fail(errno, path_);
    const off_t bytes = ::ftello(sheet->optimize_tmpfile);
    rows_of_one = std::max(rows_of_one, static_cast<std::uintmax_t>(bytes));
    rows_of_all += static_cast<std::uintmax_t>(bytes);
  }
  book_->options.use_zip64 = rows_of_all > kMostZip ? LXW_TRUE : LXW_FALSE;
  std::error_code unknown;
  const std::filesystem::space_info space = std::filesystem::space(folder_, unknown);
  if (!unknown && space.available < rows_of_one + kFrame) Fail(ENOSPC, path_);
}

lxw_format* Workbook::Format(const std::string& number_format, CellLook look) {
  // Spreadsheet programs know no more than these of one file.
  constexpr std::size_t kMostNumberFormats = 200;
  auto found = formats_.find(number_format);
  if (found == formats_.end()) {
    if (!number_format.empty() && formats_.size() > kMostNumberFormats) return nullptr;
    found = formats_.emplace(number_format, Looks{}).first;
  }
  lxw_format*& format = found->second.at(IndexOf(look));
  if (format == nullptr) format = NewFormat(number_format, look);
  return format;
}

lxw_format* Workbook::NewFormat(const std::string& number_format, CellLook look) {
  lxw_format* const format = workbook_add_format(book_);
  if (format == nullptr) throw Error(error_number::kOutOfMemory, "out of memory");
  format_set_font_name(format, font_.name.c_str());
  format_set_font_size(format, font_.size);
  if (font_.flags.bold || look.bold) format_set_bold(format);
  if (font_.flags.italic) format_set_italic(format);
  if (font_.flags.underline || look.underline) format_set_underline(format, LXW_UNDERLINE_SINGLE);
  if (font_.flags.strikethrough) format_set_font_strikeout(format);
  if (look.at_right) format_set_align(format, LXW_ALIGN_RIGHT);
  if (!number_format.empty()) format_set_num_format(format, number_format.c_str());
  return format;
}

}  // namespace kel
