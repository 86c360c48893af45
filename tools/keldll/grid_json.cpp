#include "keldll/grid_json.h"

#include <array>
#include <map>
#include <span>
#include <string_view>
#include <utility>

#include "common/error.h"
#include "keldll/arguments.h"
#include "keldll/json_input.h"

namespace kel::command {
namespace {

enum class Member {
  kCaption,
  kTextMatrix,
  kColWidth,
  kColAlignment,
  kFixedRows,
  kCellFontBold,
  kCellFontUnderline,
  kReportTitle
};

struct MemberSpec {
  std::string_view name;
  int depth;  // of arrays around its values
  std::string_view expected;
};

constexpr std::string_view kCellPairs = "an array of [row, column] pairs";

// In the order of Member.
constexpr std::array kMembers = {
    MemberSpec{"Caption", 0, "a text"},
    MemberSpec{"TextMatrix", 2, "an array of rows, each an array of texts"},
    MemberSpec{"ColWidth", 1, "an array of whole numbers"},
    MemberSpec{"ColAlignment", 1, "an array of whole numbers"},
    MemberSpec{"FixedRows", 0, "a whole number, 0 or more"},
    MemberSpec{"CellFontBold", 2, kCellPairs},
    MemberSpec{"CellFontUnderline", 2, kCellPairs},
    MemberSpec{"ReportTitle", 1, "an array of texts"},
};

// Follows RapidJSON's events and keeps what the members say. Throws JsonFault.
class GridHandler {
 public:
  // The events. Numbers come as the texts they are written as.
  bool Null() { return Scalar(Kind::kOther, ""); }
  bool Bool(bool value) { return Scalar(Kind::kOther, value ? "true" : "false"); }
  bool RawNumber(const char* text, std::size_t size, bool /*copy*/) {
    return Scalar(Kind::kNumber, {text, size});
  }
  bool String(const char* text, std::size_t size, bool /*copy*/) {
    return Scalar(Kind::kText, {text, size});
  }
  bool StartObject();
  bool Key(const char* text, std::size_t size, bool /*copy*/);
  bool EndObject(std::size_t /*members*/) { return true; }
  bool StartArray();
  bool EndArray(std::size_t /*elements*/);
  // RapidJSON asks for these too; with numbers as texts it never calls them.
  bool Int(int /*number*/) { return false; }
  bool Uint(unsigned /*number*/) { return false; }
  bool Int64(std::int64_t /*number*/) { return false; }
  bool Uint64(std::uint64_t /*number*/) { return false; }
  bool Double(double /*number*/) { return false; }

  /// What was read, once everything was.
  JsonGrid Finish();

 private:
  enum class Kind { kText, kNumber, kOther };

  bool Scalar(Kind kind, std::string_view text);
  void AddCell(std::string_view text);
  void AddText(Kind kind, std::string_view text);
  void AddNumber(Kind kind, std::string_view text);
  void EndRow();
  void EndPair();
  void ApplyFonts();

  const MemberSpec& Spec() const { return kMembers[static_cast<std::size_t>(member_)]; }
  bool Seen(Member member) const { return seen_[static_cast<std::size_t>(member)]; }
  [[noreturn]] void ThrowWrongType() const {
    throw JsonFault(std::string(Spec().name) + " must be " + std::string(Spec().expected));
  }

  bool in_object_ = false;
  Member member_ = Member::kCaption;
  int depth_ = 0;  // arrays open inside the member
  std::array<bool, kMembers.size()> seen_{};

  JsonGrid read_;
  std::string row_texts_;
  std::vector<std::size_t> row_ends_;  // of each cell in row_texts_
  std::vector<std::int32_t> pair_;
  std::vector<std::int32_t> alignments_;
  std::int32_t fixed_rows_ = 1;
  std::map<std::pair<std::int32_t, std::int32_t>, CellFont> fonts_;
};

bool GridHandler::StartObject() {
  if (in_object_) ThrowWrongType();
  in_object_ = true;
  return true;
}

bool GridHandler::Key(const char* text, std::size_t size, bool /*copy*/) {
  const std::string_view name(text, size);
  for (std::size_t i = 0; i < kMembers.size(); ++i) {
    if (kMembers[i].name != name) continue;
    if (seen_[i]) throw JsonFault(std::string(name) + " stands there twice");
    seen_[i] = true;
    member_ = static_cast<Member>(i);
    return true;
  }
  throw JsonFault("unknown member \"" + std::string(name) + "\"");
}

bool GridHandler::StartArray() {
  if (!in_object_) throw JsonFault("a grid is an object with the member TextMatrix");
  if (++depth_ > Spec().depth) ThrowWrongType();
  if (member_ == Member::kColWidth) read_.widths.emplace();
  return true;
}

bool GridHandler::Scalar(Kind kind, std::string_view text) {
  if (!in_object_) throw JsonFault("a grid is an object with the member TextMatrix");
  if (depth_ != Spec().depth) ThrowWrongType();
  switch (member_) {
    case Member::kTextMatrix:
      AddCell(text);
      break;
    case Member::kCaption:
    case Member::kReportTitle:
      AddText(kind, text);
      break;
    default:
      AddNumber(kind, text);
  }
  return true;
}

void GridHandler::AddCell(std::string_view text) {
  row_texts_ += text;
  row_ends_.push_back(row_texts_.size());
}

void GridHandler::AddText(Kind kind, std::string_view text) {
  if (kind != Kind::kText) ThrowWrongType();
  if (member_ == Member::kCaption) {
    read_.caption = std::string(text);
  } else {
    read_.titles.emplace_back(text);
  }
}

void GridHandler::AddNumber(Kind kind, std::string_view text) {
  const std::optional<std::int32_t> number =
      kind == Kind::kNumber ? ReadInteger(text) : std::nullopt;
  if (!number) ThrowWrongType();
  if (member_ == Member::kColWidth) {
    read_.widths->push_back(*number);
  } else if (member_ == Member::kColAlignment) {
    alignments_.push_back(*number);
  } else if (member_ == Member::kFixedRows) {
    if (*number < 0) ThrowWrongType();
    fixed_rows_ = *number;
  } else {
    pair_.push_back(*number);
  }
}

bool GridHandler::EndArray(std::size_t /*elements*/) {
  --depth_;
  if (Spec().depth == 2 && depth_ == 1) {
    if (member_ == Member::kTextMatrix) {
      EndRow();
    } else {
      EndPair();
    }
  }
  return true;
}

void GridHandler::EndRow() {
  std::vector<std::string_view> cells;
  cells.reserve(row_ends_.size());
  std::size_t begin = 0;
  for (const std::size_t end : row_ends_) {
    cells.push_back(std::string_view(row_texts_).substr(begin, end - begin));
    begin = end;
  }
  read_.grid.AddRow(cells);
  row_texts_.clear();
  row_ends_.clear();
}

void GridHandler::EndPair() {
  if (pair_.size() != 2) ThrowWrongType();
  CellFont& font = fonts_[{pair_[0], pair_[1]}];
  (member_ == Member::kCellFontBold ? font.bold : font.underline) = true;
  pair_.clear();
}

JsonGrid GridHandler::Finish() {
  if (!Seen(Member::kTextMatrix)) throw JsonFault("TextMatrix is missing");
  if (read_.grid.Cols() == 0) throw JsonFault("TextMatrix has no cells");
  ApplyFonts();
  read_.grid.FixedRows(fixed_rows_);
  for (std::size_t col = 0; col < alignments_.size(); ++col) {
    read_.grid.ColAlignment(static_cast<std::int32_t>(col), alignments_[col]);
  }
  return std::move(read_);
}

void GridHandler::ApplyFonts() {
  MemoryGrid& grid = read_.grid;
  for (const auto& [cell, font] : fonts_) {
    const auto [row, col] = cell;
    if (row < 0 || row >= grid.Rows() || col < 0 || col >= grid.Cols()) {
      const auto mark =
          static_cast<std::size_t>(font.bold ? Member::kCellFontBold : Member::kCellFontUnderline);
      throw JsonFault(std::string(kMembers[mark].name) + " marks the cell [" + std::to_string(row) +
                      ", " + std::to_string(col) + "], but the grid has " +
                      std::to_string(grid.Rows()) + " rows and " + std::to_string(grid.Cols()) +
                      " columns");
    }
    grid.Font(row, col, font);
  }
}

void Parse(JsonInput& input, GridHandler& handler) {
  constexpr unsigned kFlags =
      rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
  input.SkipByteOrderMark();
  JsonReader reader;
  const rapidjson::ParseResult result = reader.Parse<kFlags>(input, handler);
  if (result.IsError()) throw JsonFault(rapidjson::GetParseError_En(result.Code()));
  if (!input.AtEnd()) {
    throw JsonFault(rapidjson::GetParseError_En(rapidjson::kParseErrorDocumentRootNotSingular));
  }
}

Error FaultIn(const std::filesystem::path& path, const std::string& fault) {
  return {error_number::kInvalidFileFormat, path.string() + ": " + fault};
}

}  // namespace

JsonGrid ReadGridJson(const std::filesystem::path& path) {
  InputFile file(path);
  JsonInput input(file);
  GridHandler handler;
  try {
    Parse(input, handler);
  } catch (const JsonFault& fault) {
    throw FaultIn(path, input.Place() + ": " + fault.what());
  }
  try {
    return handler.Finish();
  } catch (const JsonFault& fault) {
    throw FaultIn(path, fault.what());
  }
}

}  // namespace kel::command
