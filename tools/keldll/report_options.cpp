#include "keldll/report_options.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <utility>

#include "common/names.h"
#include "common/text_cells.h"
#include "platform/qt/qt_sql.h"

namespace kel::command {
namespace {

constexpr std::array kOptions = {
    OptionSpec{"--db", OptionKind::kValue},
    OptionSpec{"--sql", OptionKind::kValue},
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

// Endings of outputs that come with later versions.
constexpr std::array<std::string_view, 3> kLaterEndings = {".doc", ".xls", ".xlsx"};

// Collects what the version cannot do while the command line is still being checked, since wrong
// usage is told first.
class Reading {
 public:
  explicit Reading(std::span<const std::string> words) : arguments_(words, kOptions) {}

  ReportOptions Read() {
    ReadSource();
    ReadTexts();
    ReadColumns();
    ReadRanges();
    ReadSettings();
    ReadOutputs();
    if (!missing_.empty()) throw NotInThisVersion(missing_);
    return std::move(options_);
  }

 private:
  void ReadSource();
  void ReadDatabase();
  void ReadFile(const std::string& path);
  void ReadTexts();
  void ReadColumns();
  void ReadRanges();
  void ReadSettings();
  void ReadOutputs();
  void ReadOutput(const std::string& path);
  void Miss(const std::string& what) {
    if (missing_.empty()) missing_ = what;
  }

  Arguments arguments_;
  ReportOptions options_;
  std::string missing_;
};

// From the last point of the file's name on; ".txt" is all ending.
std::string Ending(const std::string& path) {
  const std::string name = std::filesystem::path(path).filename();
  const std::size_t point = name.rfind('.');
  return point == std::string::npos ? "" : name.substr(point);
}

bool EndsAs(const std::string& path, std::string_view ending) {
  return SameName(Ending(path), ending);
}

void Reading::ReadSource() {
  const std::vector<std::string>& words = arguments_.Positional();
  const bool database = arguments_.Has("--db") || arguments_.Has("--sql");
  if (words.size() > (database ? 0U : 1U)) {
    throw UsageError(database ? "\"" + words[0] + "\" and --db: a report has one source"
                              : "unexpected \"" + words[1] + "\"");
  }
  if (database) {
    ReadDatabase();
  } else if (words.empty()) {
    throw UsageError("the source is missing");
  } else {
    ReadFile(words[0]);
  }
}

void Reading::ReadDatabase() {
  if (!arguments_.Has("--db")) throw UsageError("--sql needs --db");
  if (!arguments_.Has("--sql")) throw UsageError("--db needs --sql");
  options_.source_kind = SourceKind::kDatabaseFile;
  options_.source = *arguments_.Value("--db");
  options_.sql = *arguments_.Value("--sql");
  if (IsDatabaseUrl(options_.source)) {
    options_.source_kind = SourceKind::kServer;
    options_.server = std::exchange(options_.source, WithoutPassword(options_.source));
  }
}

void Reading::ReadFile(const std::string& path) {
  options_.source = path;
  if (EndsAs(path, ".json")) {
    options_.source_kind = SourceKind::kGridFile;
  } else if (EndsAs(path, ".csv")) {
    options_.source_kind = SourceKind::kCsvFile;
  } else {
    throw UsageError("source \"" + path + "\": a file's name ends in .json or .csv");
  }
}

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
    options_.widths.emplace();
    for (const std::string& item : SplitList(*text)) {
      const std::optional<std::int32_t> width = ReadInteger(item);
      if (!width) throw UsageError("--widths: \"" + item + "\" is not a whole number");
      options_.widths->push_back(*width);
    }
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
  } else if (EndsAs(path, ".txt")) {
    options_.outputs.push_back({OutputKind::kText, path});
  } else if (EndsAs(path, ".pdf")) {
    options_.outputs.push_back({OutputKind::kPdf, path});
  } else if (std::any_of(kLaterEndings.begin(), kLaterEndings.end(),
                         [&](std::string_view ending) { return EndsAs(path, ending); })) {
    Miss(path + ": " + Ending(path) + " output");
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
