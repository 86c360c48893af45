#include "keldll/browse_options.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "common/names.h"

namespace kel::command {
namespace {

constexpr std::array kOptions = {
    kDbOption,
    kSqlOption,
    OptionSpec{"--caption", OptionKind::kValue},
    OptionSpec{"--active", OptionKind::kValue},
    OptionSpec{"--sums", OptionKind::kValue},
    OptionSpec{"--formats", OptionKind::kValue},
    OptionSpec{"--align", OptionKind::kValue},
};

struct AlignmentWord {
  std::string_view letter;
  std::string_view word;
  GridAlignment alignment;
};

constexpr std::array kAlignmentWords = {
    AlignmentWord{"l", "left", gridLeft}, AlignmentWord{"r", "right", gridRight},
    AlignmentWord{"c", "centre", gridCenter}, AlignmentWord{"g", "general", gridGeneral}};

std::vector<std::int32_t> ReadColumns(const Arguments& arguments, std::string_view option) {
  const std::optional<std::string> text = arguments.Value(option);
  if (!text) return {};
  std::vector<std::int32_t> columns = ReadIntegers(option, *text);
  if (std::any_of(columns.begin(), columns.end(), [](std::int32_t column) { return column < 0; })) {
    throw UsageError(std::string(option) + " \"" + *text + "\": columns are counted from 0");
  }
  return columns;
}

// How much of "4=..." is the column, with the sign behind it; 0 where no format begins.
std::size_t ColumnLength(std::string_view text) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  return digits > 0 && digits < text.size() && text[digits] == '=' ? digits + 1 : 0;
}

// Where the format ends that the text begins with.
std::size_t FormatEnd(std::string_view text) {
  std::size_t comma = text.find(',');
  while (comma != std::string_view::npos && ColumnLength(text.substr(comma + 1)) == 0) {
    comma = text.find(',', comma + 1);
  }
  return std::min(comma, text.size());
}

std::map<std::int32_t, std::string> ReadFormats(std::string_view text) {
  std::map<std::int32_t, std::string> formats;
  for (std::string_view rest = text;;) {
    const std::size_t begin = ColumnLength(rest);
    const std::optional<std::int32_t> column =
        begin == 0 ? std::nullopt : ReadInteger(rest.substr(0, begin - 1));
    if (!column) {
      throw UsageError("--formats \"" + std::string(text) +
                       "\": formats are written COLUMN=FORMAT,..., columns are counted from 0");
    }
    const std::size_t end = FormatEnd(rest);
    if (!formats.emplace(*column, rest.substr(begin, end - begin)).second) {
      throw UsageError("--formats gives column " + std::to_string(*column) + " twice");
    }
    if (end == rest.size()) return formats;
    rest.remove_prefix(end + 1);
  }
}

GridAlignment ReadAlignment(const std::string& text) {
  for (const auto& [letter, word, alignment] : kAlignmentWords) {
    if (SameName(text, letter) || SameName(text, word)) return alignment;
  }
  throw UsageError("--align: \"" + text + "\" is none of l, r, c and g");
}

std::vector<GridAlignment> ReadAlignments(const Arguments& arguments) {
  std::vector<GridAlignment> alignments;
  if (const std::optional<std::string> text = arguments.Value("--align")) {
    for (const std::string& item : SplitList(*text)) alignments.push_back(ReadAlignment(item));
  }
  return alignments;
}

}  // namespace

BrowseOptions ReadBrowseOptions(std::span<const std::string> words) {
  const Arguments arguments(words, kOptions);
  BrowseOptions options;
  options.source = ReadSource(arguments);
  options.caption = arguments.Value("--caption");
  options.active = ReadColumns(arguments, "--active");
  options.sums = ReadColumns(arguments, "--sums");
  if (const auto text = arguments.Value("--formats")) options.formats = ReadFormats(*text);
  options.alignments = ReadAlignments(arguments);
  return options;
}

}  // namespace kel::command
