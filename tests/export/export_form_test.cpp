#include "export/export_form.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/test_folder.h"

namespace kel {
namespace {

using Step = ExportForm::Step;

TEST(ExportFormTest, StoredChoicesAreTakenAndWhatIsNoIndexOfAListIsItsFirstItem) {
  MemorySettingsStore store;
  EXPECT_EQ(ExportForm(store).Format(), ExportFormat::kDocument);
  for (const char* garbage : {"", "-1", "5", "x", "1.5", "1E300", "4294967297"}) {
    store.Write("Export", "Format", garbage);
    store.Write("Export", "Destination", garbage);
    EXPECT_EQ(ExportForm(store).Format(), ExportFormat::kDocument) << garbage;
    EXPECT_EQ(ExportForm(store).Destination(), ExportDestination::kApplication) << garbage;
  }
  store.Write("Export", "Attachment", "Sales");
  ExportForm form(store);
  form.Format(ExportFormat::kPdf);
  form.Destination(ExportDestination::kMail);
  form.Keep();
  EXPECT_EQ(store.Read("Export", "Format"), "4");
  EXPECT_EQ(store.Read("Export", "Destination"), "2");
  EXPECT_EQ(ExportForm(store).Format(), ExportFormat::kPdf);
  EXPECT_EQ(ExportForm(store).Name(), "Sales") << "opened with mail chosen";
  form.Name(" Sales 'of' 2026");
  form.Keep();
  form.Destination(ExportDestination::kDiskFile);
  form.Choose("/home/user/Sales");
  form.Keep();
  EXPECT_EQ(store.Read("Export", "Attachment"), " Sales 'of' 2026");
}

TEST(ExportFormTest, EachDestinationHasItsOwnRules) {
  struct Case {
    ExportDestination destination;
    const char* label;
    const char* name;
    bool enabled, read_only, browse;
    Step on_ok;
  };
  MemorySettingsStore store;
  store.Write("Export", "Attachment", "Sales");
  ExportForm form(store);
  for (const Case& rules :
       {Case{ExportDestination::kDiskFile, "&Filename :", "", true, true, true, Step::kBrowse},
        {ExportDestination::kMail, "&Attatchment Name :", "Sales", true, false, false,
         Step::kExport},
        {ExportDestination::kApplication, "&Filename :", "", false, true, true, Step::kExport}}) {
    form.Name("typed before");
    form.Destination(rules.destination);
    EXPECT_STREQ(ExportForm::NameLabel(form.Destination()), rules.label);
    EXPECT_EQ(form.Name(), rules.name);
    EXPECT_EQ(form.IsNameEnabled(), rules.enabled) << rules.label;
    EXPECT_EQ(form.IsNameReadOnly(), rules.read_only) << rules.label;
    EXPECT_EQ(form.CanBrowse(), rules.browse) << rules.label;
    EXPECT_EQ(form.OnOk(), rules.on_ok) << rules.label;
  }
  form.Destination(ExportDestination::kMail);
  form.Name("  ");
  EXPECT_EQ(form.OnOk(), Step::kAskName);
}

TEST(ExportFormTest, ANameFollowsTheFormatAndNoFileIsReplacedUnasked) {
  const testing::TestFolder folder;
  MemorySettingsStore store;
  ExportForm form(store);
  form.Destination(ExportDestination::kDiskFile);
  const auto choose = [&](const char* name) { form.Choose((folder / name).string()); };
  const auto name = [&] { return std::filesystem::path(form.Name()).filename().string(); };
  for (const char* there : {"Sales.doc", "Sales.pdf", "1.4.pdf"}) {
    testing::WriteFile(folder / there, "old");
  }
  choose("Sales.doc");  // and the file dialog has asked
  EXPECT_EQ(form.OnOk(), Step::kExport);
  form.Format(ExportFormat::kPdf);
  EXPECT_EQ(name(), "Sales.pdf");
  EXPECT_EQ(form.OnOk(), Step::kBrowse);
  form.Format(ExportFormat::kWorkbook);
  EXPECT_EQ(name(), "Sales.xlsx");
  EXPECT_EQ(form.OnOk(), Step::kExport);
  form.Format(ExportFormat::kPdf);
  choose("1.4");
  EXPECT_EQ(name(), "1.4.pdf");
  EXPECT_EQ(form.OnOk(), Step::kBrowse) << "asked was about 1.4";
  choose("1.4.PDF");
  EXPECT_EQ(name(), "1.4.PDF");
  form.Destination(ExportDestination::kMail);
  for (const auto& [typed, expected] :
       {std::pair("Q1. Sales", "Q1. Sales"), {"Sales.Doc", "Sales.txt"}, {"", ""}}) {
    form.Name(typed);
    form.Format(ExportFormat::kText);
    EXPECT_EQ(form.Order({}).name, expected);
  }
}

}  // namespace
}  // namespace kel
