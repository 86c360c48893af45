#include "export/report_export.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <functional>
#include <vector>

#include "common/handover.h"
#include "common/temp_folder.h"
#include "export/native_office.h"
#include "support/errors.h"
#include "support/file_size_limit.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using testing::Contains;
using testing::ErrorOf;
using testing::ReadFile;
using testing::WriteFile;

class Desk : public DesktopPrograms {
 public:
  void Open(const std::filesystem::path& file) override { opened.push_back(file); }
  void ComposeMail(const std::string& subject, const std::filesystem::path& attachment) override {
    if (no_mail) throw Error(error_number::kCannotCreateObject, "no xdg-email");
    mail.emplace_back(subject, attachment);
  }
  void RequireSheetMaker() override {}
  // A copy stands for what an office would make.
  bool MakeSheet(const std::filesystem::path& workbook, const std::filesystem::path& sheet,
                 const std::function<bool()>& go_on) override {
    if (!go_on()) return false;
    std::filesystem::copy_file(workbook, sheet);
    return true;
  }

  bool no_mail = false;
  std::vector<std::filesystem::path> opened;
  std::vector<std::pair<std::string, std::filesystem::path>> mail;
};

class Patience : public ExportProgress {
 public:
  void Begin(std::int64_t steps) override { most = steps; }
  bool Step(std::int64_t steps) override {
    done += steps;
    return --steps_until_stop != 0;
  }

  int steps_until_stop = -1;
  std::int64_t most = 0;
  std::int64_t done = 0;
};

class ReportExportTest : public ::testing::Test {
 protected:
  ReportExportTest() {
    order_.report.page_file = folder_ / "r.rpt";
    order_.report.settings = {};
    order_.report.settings.mode = "DOS";
    order_.report.settings.page_width = 8;
    order_.report.settings.page_height = 12;
    order_.report.settings.portrait = true;
    order_.report.job = {
        1, 2, 10, 2, false, nullptr, {{4, TextSide::kLeft}, {5, TextSide::kRight}}};
    order_.destination = ExportDestination::kDiskFile;
    WriteFile(order_.report.page_file, "Cash  1.50\r\n\x0c\r\nBank  2.50\r\n\x0c\r\n");
  }

  bool Export(ExportFormat format) {
    order_.format = format;
    return ExportReport(order_, office_, patience_);
  }
  std::size_t FilesHandedOver() const {
    std::size_t files = 0;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(TempFolder() / kHandoverFolderName)) {
      if (entry.is_regular_file()) ++files;
    }
    return files;
  }

  testing::TestFolder folder_;
  std::shared_ptr<Desk> desk_ = std::make_shared<Desk>();
  NativeOffice office_{desk_};
  Patience patience_;
  ExportOrder order_;
};

struct FormatFile {
  ExportFormat format;
  const char* extension;
  std::string_view begins;
};
constexpr std::array<FormatFile, 5> kFiles = {{{ExportFormat::kDocument, ".doc", "{\\rtf1"},
                                               {ExportFormat::kSheet, ".xls", "PK"},
                                               {ExportFormat::kText, ".txt", "Cash  1.50\r\n"},
                                               {ExportFormat::kWorkbook, ".xlsx", "PK"},
                                               {ExportFormat::kPdf, ".pdf", "%PDF"}}};

TEST_F(ReportExportTest, EveryFormatIsMadeUnderItsExtensionAndOpenedFromAFreshFileEachTime) {
  order_.destination = ExportDestination::kApplication;
  for (const FormatFile& file : kFiles) {
    EXPECT_TRUE(Export(file.format));
    EXPECT_TRUE(Export(file.format));
    const std::size_t count = desk_->opened.size();
    const std::filesystem::path& last = desk_->opened[count - 1];
    EXPECT_NE(last, desk_->opened[count - 2]);
    EXPECT_EQ(last.extension(), file.extension);
    EXPECT_EQ(last.parent_path(), TempFolder() / kHandoverFolderName);
    EXPECT_TRUE(ReadFile(last).starts_with(file.begins)) << file.extension;
  }
  // The next object of the library that is made empties the temporary folder.
  PrepareTempFolder();
  for (const auto& file : desk_->opened) EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(ReportExportTest, AFailedOrStoppedExportLeavesTheOldFileWhole) {
  order_.name = folder_ / "old";
  for (const FormatFile& file : kFiles) {
    WriteFile(order_.name, "old");
    patience_.steps_until_stop = 1;
    EXPECT_FALSE(Export(file.format));
    patience_.steps_until_stop = -1;
    EXPECT_EQ(ReadFile(order_.name), "old");

    {
      const testing::FileSizeLimit full(4);
      EXPECT_THROW(Export(file.format), Error);
    }
    EXPECT_EQ(ReadFile(order_.name), "old") << file.extension;
    EXPECT_TRUE(Export(file.format));
    EXPECT_TRUE(ReadFile(order_.name).starts_with(file.begins));
    EXPECT_GE(patience_.done, 2) << file.extension;
  }
  std::filesystem::remove(order_.report.page_file);
  for (const FormatFile& file : kFiles) EXPECT_THROW(Export(file.format), Error);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 1);
}

TEST_F(ReportExportTest, OddNamesAreFilesLikeAnyOther) {
  for (const char* name :
       {"-o x.txt", "it's \"quoted\" $(touch here).txt", "two\nlines.txt", "नकद खाता.txt"}) {
    order_.name = folder_ / name;
    EXPECT_TRUE(Export(ExportFormat::kText));
    EXPECT_TRUE(ReadFile(order_.name).starts_with("Cash"));
  }
  ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);  // without a reader
  std::filesystem::create_symlink("r.rpt", folder_ / "pages.txt");
  for (const auto& [name, number] : {std::pair("", error_number::kPermissionDenied),
                                     {"r.rpt/below a file.txt", error_number::kPathNotFound},
                                     {"pipe", error_number::kBadFileName},
                                     {"pages.txt", error_number::kPermissionDenied}}) {
    order_.name = folder_ / name;
    EXPECT_EQ(ErrorOf([&] { Export(ExportFormat::kText); }).Number(), number) << name;
  }
  EXPECT_TRUE(ReadFile(folder_ / "r.rpt").ends_with("\x0c\r\n"));
}

TEST_F(ReportExportTest, MailCarriesTheFileUnderTheNameTyped) {
  order_.destination = ExportDestination::kMail;
  struct Typed {
    const char* typed;
    const char* subject;
    const char* file;
  };
  const std::array<Typed, 6> names = {{{"Sales", "Sales", "Sales.xls"},
                                       {" Sales.xls ", "Sales", "Sales.xls"},
                                       {"Sales.XLS", "Sales", "Sales.xls"},
                                       {"a.xls b.xls", "a b", "a b.xls"},
                                       {"../up", "../up", ".._up.xls"},
                                       {"-x \"y\"\n$(z)", "-x \"y\"\n$(z)", "-x \"y\"_$(z).xls"}}};
  for (const auto& name : names) {
    order_.name = name.typed;
    EXPECT_TRUE(Export(ExportFormat::kSheet));
    ASSERT_FALSE(desk_->mail.empty());
    EXPECT_EQ(desk_->mail.back().first, name.subject);
    EXPECT_EQ(desk_->mail.back().second.filename(), name.file);
    EXPECT_TRUE(ReadFile(desk_->mail.back().second).starts_with("PK"));
  }
  std::string long_name;
  for (int i = 0; i < 200; ++i) long_name += "कि";
  order_.name = long_name;
  EXPECT_TRUE(Export(ExportFormat::kText));
  EXPECT_EQ(desk_->mail.back().second.extension(), ".txt");
}

TEST_F(ReportExportTest, WhatNobodyWasGivenIsNotLeftBehind) {
  EXPECT_TRUE(Export(ExportFormat::kText));  // a name of blanks is none
  const std::size_t before = FilesHandedOver();
  order_.destination = ExportDestination::kMail;
  order_.name = "Sales";
  desk_->no_mail = true;
  EXPECT_TRUE(Contains(ErrorOf([&] { Export(ExportFormat::kPdf); }), "no xdg-email"));
  patience_.steps_until_stop = 1;
  EXPECT_FALSE(Export(ExportFormat::kPdf));
  EXPECT_EQ(FilesHandedOver(), before);

  NativeOffice none(nullptr);
  order_ = {order_.report, ExportFormat::kSheet, ExportDestination::kDiskFile, folder_ / "x.xls"};
  patience_.steps_until_stop = -1;
  const Error no_sheet = ErrorOf([&] { ExportReport(order_, none, patience_); });
  EXPECT_EQ(no_sheet.Number(), 429);
  EXPECT_TRUE(Contains(no_sheet, ".xlsx"));
  EXPECT_FALSE(std::filesystem::exists(order_.name));
}

}  // namespace
}  // namespace kel
