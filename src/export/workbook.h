// A workbook file in the making.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/text_cells.h"
#include "engine/print_settings.h"

struct lxw_format;
struct lxw_workbook;
struct lxw_worksheet;

namespace kel {

/// The one font of a workbook.
struct WorkbookFont {
  std::string name;
  double size = 0;  // points
  FontFlags flags;
  double digits_a_cell = 1;  // the room that a character takes in columns
};

/// How the sheets are printed: on one page each.
struct SheetPage {
  bool portrait = true;
  std::uint8_t paper = 0;  // PaperCode
  double left_margin = 0;  // inches; the others are 0
};

/// What one cell looks like beside the workbook's font.
struct CellLook {
  bool bold = false;
  bool underline = false;
  bool at_right = false;
};

/// Writes an .xlsx file sheet by sheet, row by row, cell by cell; each goes forward only. Memory
/// does not grow with the rows: those wait in an unnamed file beside the workbook. Every operation
/// throws Error for what the file says. One that is destroyed before Close leaves no file.
class Workbook {
 public:
  Workbook(const std::filesystem::path& path, WorkbookFont font);
  ~Workbook();
  Workbook(const Workbook&) = delete;
  Workbook& operator=(const Workbook&) = delete;

  void SetTitle(const std::string& title);

  /// What follows goes to the first row of a new sheet. `name` is one that sheets may have.
  void AddSheet(const std::string& name, const SheetPage& page);
  /// Texts of no more than kMostCellText.
  void WriteText(std::int32_t column, std::string_view text, CellLook look);
  /// False, and no cell, when the workbook can hold no further number format.
  bool WriteNumber(std::int32_t column, double value, const std::string& number_format,
                   CellLook look);
  void EndRow();
  std::int64_t Rows() const { return row_; }
  /// Makes the sheet's first columns as wide as so many characters; one of 0 keeps its width.
  void SetColumns(const std::vector<Cells>& widths);

  /// Makes the file.
  void Close();

 private:
  using Looks = std::array<lxw_format*, 8>;

  void RequireRoom();
  void Free();
  lxw_format* Format(const std::string& number_format, CellLook look);
  lxw_format* NewFormat(const std::string& number_format, CellLook look);

  std::filesystem::path path_;
  WorkbookFont font_;
  std::string folder_;
  lxw_workbook* book_ = nullptr;
  std::vector<lxw_worksheet*> sheets_;
  std::int64_t row_ = 0;
  std::string text_;  // of the last cell
  std::unordered_map<std::string, Looks> formats_;
  bool whole_ = false;
};

}  // namespace kel
