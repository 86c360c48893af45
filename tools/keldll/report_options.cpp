#include "keldll/report_options.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "common/names.h"
#include "common/text_cells.h"
#include "keldll/file_ending.h"

namespace kel::command {
namespace {

constexpr std::array kOptions = {
    kDbOption,
    kSqlOption,
    OptionSpec{"--caption", OptionKind::kValue},
    OptionSpec{"--title", OptionKind::kRepeatedValue},
    OptionSpec{"--widths", OptionKind::kValue},
    OptionSpec{"--align", OptionKind::kValue},
    OptionSpec{"--rows", OptionKind::kValue},
    OptionSpec{"--cols", OptionKind::kValue},
    OptionSpec{"--start-page", OptionKind::kValue},
    OptionSpec{"--set", OptionKind::kRepeatedValue},
    OptionSpec{"--stamp", OptionKind::kValue},
    OptionSpec{"--pages", OptionKind::kValue},
    OptionSpec{"-o", OptionKind::kRepeatedValue},
    OptionSpec{"--print", OptionKind::kFlag},
    OptionSpec{"--preview", OptionKind::kFlag},
};

class Reading {
 public:
  explicit Reading(std::span<const std::string> words) : arguments_(words, kOptions) {}

  ReportOptions Read() {
    options_.source = ReadSource(arguments_);
    ReadTexts();
    ReadColumns();
    ReadRanges();
    ReadSettings();
    ReadOutputs();
    return std::move(options_);
  }

 private:
  void ReadTexts();
  void ReadColumns();
  void ReadRanges();
  void ReadSettings();
  void ReadOutputs();
  void ReadOutput(const std::string& path);

  Arguments arguments_;
  ReportOptions options_;
};

void Reading::ReadTexts() {
  options_.caption = arguments_.Value("--caption");
  options_.titles = arguments_.Values("--title");
  options_.stamp = arguments_.Value("--stamp");
}

int ReadAlignment(const std::string& word) {
  if (SameName(word, "l") || SameName(word, "left")) return kAlignLeft;
  if (SameName(word, "r") || SameName(word, "right")) return kAlignRight;
  throw UsageError("--align: \"" + word + "\" is neither l nor r");
}

void Reading::ReadColumns() {
  if (const std::optional<std::string> text = arguments_.Value("--widths")) {
    options_.widths = ReadIntegers("--widths", *text);
  }
  if (const std::optional<std::string> text = arguments_.Value("--align")) {
    for (const std::string& item : SplitList(*text)) {
      options_.alignments.push_back(ReadAlignment(item));
    }
  }
}

void Reading::ReadRanges() {
  const auto read = [&](std::string_view option, std::int32_t least) -> std::optional<Range> {
    const std::optional<std::string> text = arguments_.Value(option);
    return text ? std::optional(ReadRange(option, *text, least)) : std::nullopt;
  };
  options_.rows = read("--rows", 0);
  options_.cols = read("--cols", 0);
  options_.pages = read("--pages", 1);
  if (const std::optional<std::string> text = arguments_.Value("--start-page")) {
    const std::optional<PageNumber> page = ReadInteger(*text);
    if (!page) throw UsageError("--start-page: \"" + *text + "\" is not a whole number");
    options_.start_page = *page;
  }
}

void Reading::ReadSettings() {
  for (const std::string& text : arguments_.Values("--set")) options_.settings.Add(text);
}

void Reading::ReadOutputs() {
  for (const std::string& path : arguments_.Values("-o")) ReadOutput(path);
  options_.print = arguments_.Has("--print");
  options_.preview = arguments_.Has("--preview");
  if (options_.outputs.empty() && !options_.print && !options_.preview) {
    options_.outputs.push_back({OutputKind::kStandardOutput, ""});
  }
}

void Reading::ReadOutput(const std::string& path) {
  if (path == "-") {
    options_.outputs.push_back({OutputKind::kStandardOutput, ""});
  } else if (EndsAs(path, ".rpt")) {
    options_.outputs.push_back({OutputKind::kPageFile, path});
  } else if (const auto format = FormatOf(FileEnding(path))) {
    options_.outputs.push_back({OutputKind::kExport, path, *format});
  } else {
    throw UsageError(
        "-o \"" + path +
        "\": an output is - or its name ends in .rpt, .txt, .pdf, .doc, .xls or .xlsx");
  }
}

}  // namespace

ReportOptions ReadReportOptions(std::span<const std::string> words) {
  return Reading(words).Read();
}

}  // namespace kel::command
