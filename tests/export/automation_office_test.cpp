#include "export/automation_office.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "support/errors.h"
#include "support/file_size_limit.h"
#include "support/recording_office.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::ErrorOf;
using testing::ReadFile;
using testing::WriteFile;
using Calls = std::vector<std::string>;

constexpr const char* kName = "-\"नकद\" '$(x)\n.doc";

class CountingProgress : public ExportProgress {
 public:
  explicit CountingProgress(std::int64_t last = -1) : last_(last) {}
  void Begin(std::int64_t steps) override { begun = steps; }
  bool Step(std::int64_t steps) override { return (taken += steps) != last_; }

  std::int64_t begun = -1;
  std::int64_t taken = 0;

 private:
  std::int64_t last_;  // the step that is answered with a stop
};

class AutomationOfficeTest : public ::testing::Test {
 protected:
  AutomationOfficeTest() {
    report_.page_file = folder_ / "r.rpt";
    WriteFile(report_.page_file,
              "  Books\r\n"
              "\x01  \x1b"
              "ECash\x1b"
              "F  |  \x1b-12,500\x1b-0|\r\n"
              "  =A1   |   -7.50|=x  over\r\n"
              "\x0c\r\n"
              " x\r\n"
              "  @me  ~|'quoted |  \r\n"
              "  -7.50                 tail\r\n"
              "\x0c\r\n");
    report_.settings.mode = "DOS";
    report_.settings.font = "Arial";
    report_.settings.font_size = 9.5;
    report_.settings.page_width = 22;
    report_.settings.page_height = 11;
    report_.settings.lines = 2;
    report_.settings.top_margin = 1;
    report_.settings.bottom_margin = 1;
    report_.settings.left_margin = 2;
    report_.settings.portrait = true;
    report_.job.page_count = 2;
    report_.job.page_length = 4;
    report_.job.columns = {{6, TextSide::kLeft}, {8, TextSide::kRight}};
    programs_->on_call = [this](const std::string& call) { ActAsProgram(call); };
  }

  // The programs read and write the file that they are told of, as it stands at that moment.
  void ActAsProgram(const std::string& call) {
    if (call.starts_with("Word.Documents.Open")) opened_ = ReadFile(target_);
    if (call == "Word.Documents.Save()") WriteFile(target_, "formatted");
    if (call.find(".SaveAs(") == std::string::npos) return;
    EXPECT_FALSE(std::filesystem::exists(target_));
    WriteFile(target_, "formatted");
  }

  bool Make(ExportFormat format, Handover handover, ExportProgress& progress) {
    programs_->calls.clear();
    AutomationOffice office(programs_);
    return office.MakeFile(format, report_, target_, handover, progress);
  }
  Calls Log(ExportFormat format, Handover handover) {
    EXPECT_TRUE(Make(format, handover, progress_));
    return programs_->calls;
  }
  int MakingFails(ExportFormat format) {
    return ErrorOf([&] { Make(format, Handover::kKeep, progress_); }).Number();
  }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  void ExpectOldFile(bool there, const std::string& when) const {
    if (there) {
      EXPECT_EQ(ReadFile(target_), "old") << when;
      EXPECT_EQ(Names(), (std::set<std::string>{kName, "r.rpt"})) << when;
    } else {
      EXPECT_EQ(Names(), (std::set<std::string>{"r.rpt"})) << when;
    }
  }
  void ExpectQuit(const std::string& when) const {
    const bool word = programs_->calls.front() == "CreateObject Word.Application";
    const Calls quit =
        word ? Calls{"Word.Quit(0)"} : Calls{"Excel.DisplayAlerts = False", "Excel.Quit()"};
    ASSERT_GT(programs_->calls.size(), quit.size()) << when;
    EXPECT_TRUE(std::equal(quit.rbegin(), quit.rend(), programs_->calls.rbegin())) << when;
  }

  testing::TestFolder folder_;
  std::filesystem::path target_ = folder_ / kName;
  ReportSnapshot report_;
  std::shared_ptr<testing::RecordingOffice> programs_ =
      std::make_shared<testing::RecordingOffice>();
  CountingProgress progress_;
  std::string opened_;
};

const std::string kPage = "Word.Documents(1).PageSetup";
const std::string kSheet = "Excel.WorkBooks.Add().WorkSheets.Add()";

// The calls less those that only fetch what the next one is made on.
Calls Deeds(const Calls& calls) {
  Calls deeds;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (i + 1 == calls.size() || !calls[i + 1].starts_with(calls[i])) deeds.push_back(calls[i]);
  }
  return deeds;
}

void Append(Calls& calls, const Calls& more) {
  calls.insert(calls.end(), more.begin(), more.end());
}

Calls DocumentCalls(const std::string& target, const Calls& width, const std::string& last) {
  Calls calls = {"CreateObject Word.Application",
                 "Word.Documents.Open(" + target + ")",
                 "Word.ActiveDocument.Range().Font.Name = Courier New",
                 "Word.ActiveDocument.Range().Font.Size = 10",
                 kPage + ".TopMargin = 0",
                 kPage + ".BottomMargin = 0",
                 "Word.InchesToPoints(0.25)",
                 kPage + ".LeftMargin = 18",
                 kPage + ".RightMargin = 0",
                 "Word.InchesToPoints(11)",
                 kPage + ".PageHeight = 792"};
  Append(calls, width);
  Append(calls, {"Word.Documents.Save()", last});
  return calls;
}

TEST_F(AutomationOfficeTest, ADocumentIsMadeInElevenStepsInThePublishedOrder) {
  const Calls width = {"Word.InchesToPoints(22)", kPage + ".PageWidth = 1584"};
  EXPECT_EQ(Deeds(Log(ExportFormat::kDocument, Handover::kKeep)),
            DocumentCalls(target_.string(), width, "Word.Quit()"));
  EXPECT_EQ(progress_.begun, 11);
  EXPECT_EQ(progress_.taken, 11);
  EXPECT_EQ(opened_,
            "  Books\r\n  Cash  |  ,500|\r\n  =A1   |   -7.50|=x  over\r\n\x0c\r\n x\r\n"
            "  @me  ~|'quoted |  \r\n  -7.50                 tail\r\n\x0c\r\n");
  EXPECT_EQ(ReadFile(target_), "formatted");

  report_.settings.page_width = 30;  // the document keeps its own
  Calls expected = DocumentCalls(target_.string(), {}, "Word.Visible = True");
  EXPECT_EQ(Deeds(Log(ExportFormat::kDocument, Handover::kOpen)), expected);

  report_.settings.mode = "WINDOWS";
  expected[2] = "Word.ActiveDocument.Range().Font.Name = Arial";
  expected[3] = "Word.ActiveDocument.Range().Font.Size = 9.5";
  EXPECT_EQ(Deeds(Log(ExportFormat::kDocument, Handover::kOpen)), expected);
  EXPECT_EQ(Names(), (std::set<std::string>{kName, "r.rpt"}));
}

Calls LayoutCalls(const std::string& sheet, int rows, int columns) {
  const std::string range = sheet + ".Range(A1:Z" + std::to_string(rows) + ").Font";
  const std::string page = sheet + ".PageSetup";
  Calls calls = {range + ".Name = Courier New", range + ".Size = 10"};
  for (int column = 1; column <= columns; ++column) {
    calls.push_back(sheet + ".Columns(" + std::to_string(column) + ").AutoFit()");
  }
  Append(calls, {page + ".Orientation = 1", page + ".TopMargin = 0", page + ".BottomMargin = 0",
                 "Excel.InchesToPoints(0.25)", page + ".LeftMargin = 18", page + ".RightMargin = 0",
                 page + ".HeaderMargin = 0", page + ".FooterMargin = 0", page + ".Zoom = False",
                 page + ".FitToPagesWide = 1", page + ".FitToPagesTall = 1"});
  return calls;
}

TEST_F(AutomationOfficeTest, ASheetIsFilledCellByCellAndLaidOut) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"Books", ""}, {"Cash  |", "  ,500|"},     {"'=A1   |", "   -7.50|=x  over"}, {"", ""},
      {" x", ""},    {"'@me  ~|", "''quoted |"}, {"-7.50", "      tail"},           {"", ""}};
  Calls expected = {"CreateObject Excel.Application"};
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const std::string cell = kSheet + ".Cells(" + std::to_string(row + 1);
    Append(expected,
           {cell + ",1).Value = " + rows[row].first, cell + ",2).Value = " + rows[row].second});
  }
  Append(expected, LayoutCalls(kSheet, 8, 2));
  Append(expected, {"Excel.WorkBooks.Add().SaveAs(" + target_.string() + ")", "Excel.Quit()"});
  EXPECT_EQ(Deeds(Log(ExportFormat::kSheet, Handover::kKeep)), expected);
  EXPECT_EQ(progress_.begun, 8);
  EXPECT_EQ(progress_.taken, 8);

  expected.back() = "Excel.Visible = True";
  report_.settings.portrait = false;
  *std::find(expected.begin(), expected.end(), kSheet + ".PageSetup.Orientation = 1") =
      kSheet + ".PageSetup.Orientation = 2";
  EXPECT_EQ(Deeds(Log(ExportFormat::kSheet, Handover::kOpen)), expected);
  EXPECT_EQ(ReadFile(target_), "formatted");
}

TEST_F(AutomationOfficeTest, WhatASheetCannotHoldGoesOnOnTheNextOrIsRefused) {
  std::string lines;
  for (int i = 1; i <= 65'537; ++i) lines += std::to_string(i) + "\n";
  WriteFile(report_.page_file, lines);
  report_.settings.left_margin = 0;
  report_.job.columns.clear();
  const std::string next = "Excel.WorkBooks.Add().WorkSheets.Add(-," + kSheet + ")";
  Calls expected = {kSheet + ".Cells(65536,1).Value = 65536"};
  Append(expected, LayoutCalls(kSheet, 65'536, 1));
  Append(expected, {next + ".Cells(1,1).Value = 65537"});
  Append(expected, LayoutCalls(next, 1, 1));
  Append(expected, {"Excel.WorkBooks.Add().SaveAs(" + target_.string() + ")", "Excel.Quit()"});
  Calls calls = Deeds(Log(ExportFormat::kSheet, Handover::kKeep));
  ASSERT_GT(calls.size(), expected.size());
  calls.erase(calls.begin(), calls.end() - static_cast<std::ptrdiff_t>(expected.size()));
  EXPECT_EQ(calls, expected);

  report_.job.columns.resize(257, {1, TextSide::kLeft});
  EXPECT_EQ(MakingFails(ExportFormat::kSheet), 6);
  EXPECT_TRUE(programs_->calls.empty());
}

TEST_F(AutomationOfficeTest, WhereverACallFailsTheProgramIsQuitAndTheOldFileStands) {
  for (const ExportFormat format : {ExportFormat::kDocument, ExportFormat::kSheet}) {
    for (const Handover handover : {Handover::kKeep, Handover::kOpen}) {
      programs_->fail_at = 0;
      const std::size_t all = Log(format, handover).size();
      for (std::size_t n = 1; n <= all; ++n) {
        for (const bool there : {true, false}) {
          std::filesystem::remove(target_);
          if (there) WriteFile(target_, "old");
          programs_->fail_at = n;
          const Error error = ErrorOf([&] { Make(format, handover, progress_); });
          const std::string when = "call " + std::to_string(n) + ": " + programs_->calls[n - 1];
          EXPECT_EQ(error.Description(), "refused") << when;
          ExpectOldFile(there, when);
          if (n > 1) ExpectQuit(when);
        }
      }
    }
  }
}

TEST_F(AutomationOfficeTest, AStopAtAnyStepQuitsTheProgramAndLeavesTheOldFile) {
  for (const ExportFormat format : {ExportFormat::kDocument, ExportFormat::kSheet}) {
    const std::int64_t steps = format == ExportFormat::kDocument ? 10 : 8;
    for (std::int64_t step = 1; step <= steps; ++step) {
      WriteFile(target_, "old");
      CountingProgress stopping(step);
      EXPECT_FALSE(Make(format, Handover::kOpen, stopping));
      const std::string when = "step " + std::to_string(step);
      EXPECT_EQ(stopping.taken, step);
      ExpectOldFile(true, when);
      if (!programs_->calls.empty()) ExpectQuit(when);
    }
  }
  CountingProgress too_late(11);  // the document is the user's by then
  EXPECT_TRUE(Make(ExportFormat::kDocument, Handover::kOpen, too_late));
  EXPECT_EQ(ReadFile(target_), "formatted");
}

TEST_F(AutomationOfficeTest, AFileSystemThatRefusesLeavesTheOldFile) {
  WriteFile(target_, "old");
  {
    const testing::FileSizeLimit full(4);
    EXPECT_EQ(MakingFails(ExportFormat::kDocument), 61);
  }
  ExpectOldFile(true, "full disk");
  std::filesystem::remove(report_.page_file);
  EXPECT_EQ(MakingFails(ExportFormat::kDocument), 53);
  EXPECT_EQ(MakingFails(ExportFormat::kSheet), 53);
  ExpectQuit("no report");
  EXPECT_EQ(Names(), (std::set<std::string>{kName}));
  target_ /= "below a file";
  EXPECT_EQ(MakingFails(ExportFormat::kSheet), 76);
  EXPECT_TRUE(programs_->calls.empty());
}

TEST_F(AutomationOfficeTest, AFormatWithoutAProgramIsWrittenHereAndOpened) {
  const std::string name = target_.string();
  EXPECT_EQ(Log(ExportFormat::kText, Handover::kOpen), Calls{"Shell Notepad.exe " + name + " 3"});
  EXPECT_TRUE(ReadFile(target_).starts_with("  Books\r\n  Cash  |  ,500|\r\n"));
  EXPECT_EQ(Log(ExportFormat::kPdf, Handover::kOpen), Calls{"Open " + name});
  EXPECT_TRUE(ReadFile(target_).starts_with("%PDF"));
  EXPECT_EQ(Log(ExportFormat::kPdf, Handover::kKeep), Calls{});
}

TEST_F(AutomationOfficeTest, MailIsShownAndTheSessionLoggedOffWhateverFails) {
  const AttachmentNames names{"Sales", "Sales.doc"};
  const std::string session = "Outlook.GetNamespace(MAPI)";
  const std::string message = "Outlook.CreateItem(0)";
  const auto send = [&](std::size_t fail_at) {
    programs_->calls.clear();
    programs_->fail_at = fail_at;
    AutomationOffice(programs_).SendMail(target_, names);
  };
  send(0);
  const Calls expected = {"CreateObject Outlook.Application",
                          session,
                          session + ".Logon()",
                          message,
                          message + ".Subject = Sales",
                          message + ".Attachments",
                          message + ".Attachments.Add(" + target_.string() + ",1,-,Sales.doc)",
                          message + ".Display()",
                          session + ".Logoff()"};
  EXPECT_EQ(programs_->calls, expected);
  for (std::size_t n = 1; n <= expected.size(); ++n) {
    EXPECT_EQ(ErrorOf([&] { send(n); }).Description(), "refused");
    Calls calls(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(n));
    if (n > 3 && n < expected.size()) calls.push_back(expected.back());
    EXPECT_EQ(programs_->calls, calls);
  }
}

}  // namespace
}  // namespace kel
