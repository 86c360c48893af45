#include "data/csv.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "data/Recordset.h"
#include "data/read_only_driver.h"
#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

using Cases = std::vector<std::pair<std::string, std::string>>;

class CsvTest : public ::testing::Test {
 protected:
  std::unique_ptr<Statement> Open(const std::string& bytes,
                                  std::size_t block = CsvReader::kBlockBytes) {
    testing::WriteFile(folder_ / "table.csv", bytes);
    return OpenCsv(folder_ / "table.csv", block);
  }

  /// What the error says from the file's name on.
  template <typename Operation>
  static std::string Error321(Operation operation) {
    const Error error = testing::ErrorOf(operation);
    EXPECT_EQ(error.Number(), 321);
    return error.Description().substr(error.Description().find("table.csv"));
  }

  testing::TestFolder folder_;
};

/// Heading and rows, values between bars and records between line ends: "a|b\n1|2\n".
std::string Flat(Statement& statement) {
  std::string text;
  for (int i = 0; i < statement.ColumnCount(); ++i) {
    text += (i > 0 ? "|" : "") + statement.Column(i).name;
  }
  while (statement.Step()) {
    text += '\n';
    for (int i = 0; i < statement.ColumnCount(); ++i) {
      text.append(i > 0 ? "|" : "").append(statement.Cell(i).bytes);
    }
  }
  return text + '\n';
}

TEST_F(CsvTest, RecordsAreTakenApartAsRfc4180SaysWhereverABlockEnds) {
  const Cases cases = {
      {"a,b\n1,", "a|b\n1|\n"},
      {"a,b", "a|b\n"},
      {"a,b,c\n,,\n\"\",,\"\"\n1\n2,\n", "a|b|c\n||\n||\n1||\n2||\n"},
      // A byte order mark counts at the beginning only.
      {"\xEF\xBB\xBF\"a\",b\n\xEF\xBB\xBF,2\n", "a|b\n\xEF\xBB\xBF|2\n"},
      {"\"a\",\"b\"\r\n\"1,5\",\"2\"\r\n", "a|b\n1,5|2\n"},
      {"a,b\n\"say \"\"hi\"\"\",\"\"\"\"\n", "a|b\nsay \"hi\"|\"\n"},
      {"a,b\n\"x\r\ny\n\",z\n", "a|b\nx\r\ny\n|z\n"},
      {"a,b\n5\" pipe,x\"\"y\n1, \"2\"\n", "a|b\n5\" pipe|x\"\"y\n1| \"2\"\n"},
      // A CR that no LF follows is data.
      {"a,b\nx\ry,z\r\n\r,\r\r\n", "a|b\nx\ry|z\n\r|\r\n"},
      {"a\nx\r", "a\nx\r\n"},
      // A blank line is a record in a file of one column only, and a quoted empty value is none.
      {"\n\r\na,b\n\n1,2\r\n\r\n\"\"\n\n", "a|b\n1|2\n|\n"},
      {"a\n1\n\n2\n", "a\n1\n\n2\n"},
      {std::string("a\n\xff\0\x80\n", 6), std::string("a\n\xff\0\x80\n", 6)},
      {"a\n\"x\"", "a\nx\n"}};
  for (const auto& [csv, flat] : cases) {
    for (std::size_t block = 1; block <= csv.size(); ++block) {
      EXPECT_EQ(Flat(*Open(csv, block)), flat) << "block " << block;
    }
  }
}

TEST_F(CsvTest, AColumnOfNumbersIsNumericByItsFirstThousandRecords) {
  std::string csv = "number,amount,text,empty,mixed,late\n";
  for (int i = 1; i < 1000; ++i) csv += "7,-1.5,x,,5,1\n";
  csv += ",\"1,250.00\",x,,5 pcs,1\n";
  const auto statement = Open(csv + "x,1,x,1,1,late\n");
  std::string types;
  for (int i = 0; i < statement->ColumnCount(); ++i) {
    types += std::to_string(static_cast<int>(statement->Column(i).type)) + " ";
  }
  EXPECT_EQ(types, "5 5 202 202 202 5 ");
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(statement->Cell(1).kind, CellView::Kind::kText);
}

TEST_F(CsvTest, RecordsAndLinesGoOnInOrderBehindTheLookAhead) {
  std::string csv = "n\n";
  for (int i = 0; i < 2500; ++i) csv += std::to_string(i) + "\n";
  EXPECT_EQ(Flat(*Open(csv)), csv);
  EXPECT_EQ(Error321([&] { Flat(*Open(csv + "1,2\n")); }),
            "table.csv, line 2502: 2 values, but the heading record has 1");
}

TEST_F(CsvTest, FaultyRecordsAreErrorsAtTheirStepNamingTheLine) {
  const Cases cases = {
      {"a,b\n1,2\n\"x\ny\",2\n1,2,3\n", "5: 3 values, but the heading record has 2"},
      {"a,b\n1,2\n\n\"x\r\ny\" z,2\n", "5: text after a closing quote"},
      {"a,b\n1,2\n\"x\",\"y\nz\n1,2\n", "3: a quote is never closed"},
      {"a,b\n1,2\n\"x\ny\",\"z\n", "4: a quote is never closed"},
      {"a,b\n1,2\n\"x\"\r,2\n", "3: text after a closing quote"}};
  for (const auto& [csv, error] : cases) {
    for (const std::size_t block : {CsvReader::kBlockBytes, std::size_t{5}}) {
      const auto statement = Open(csv, block);
      EXPECT_TRUE(statement->Step());
      EXPECT_EQ(Error321([&] { Flat(*statement); }), "table.csv, line " + error) << csv;
      EXPECT_FALSE(statement->Step());
    }
  }
}

TEST_F(CsvTest, AFileWithoutAHeadingRecordIsRefused) {
  for (const char* csv : {"", "\n", "\r\n\n", "\xEF\xBB\xBF"}) {
    EXPECT_EQ(Error321([&] { Open(csv); }), "table.csv has no heading record") << csv;
  }
  EXPECT_EQ(Error321([&] { Open("\"a"); }), "table.csv, line 1: a quote is never closed");
}

TEST_F(CsvTest, APipeReadsLikeAFile) {
  ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const std::string value(200'000, 'x');
  std::thread writer([&] { testing::WriteFile(folder_ / "pipe", "a\n" + value + "\n2\n"); });
  const auto statement = OpenCsv(folder_ / "pipe", 4096);
  writer.join();
  EXPECT_EQ(Flat(*statement), "a\n" + value + "\n2\n");
}

TEST_F(CsvTest, ThroughADriverAFileIsReadAgainByRequeryAndNeverChanged) {
  const auto path = folder_ / "table.csv";
  testing::WriteFile(path, "Name,Amount\nb,2\na,10\n");
  Connection file(ReadOnlyDriver([&] { return OpenCsv(path); }));
  Recordset rows;
  rows.FetchesInSlices(true);
  rows.Open("", file, CursorType::kStatic, LockType::kOptimistic);
  rows.Sort("[Amount] DESC");
  EXPECT_EQ(rows.FieldText(0), "a");
  testing::WriteFile(path, "Name,Amount\nb,2\nc,30\na,10\n");
  rows.Requery();
  EXPECT_EQ(rows.FieldText(0), "c");

  std::filesystem::remove(path);
  EXPECT_TRUE(testing::Contains(testing::ErrorOf([&] { rows.Requery(); }), "No such file"));
  EXPECT_EQ(rows.RecordCount(), 3);
  EXPECT_EQ(testing::ErrorOf([&] { file.Execute("DELETE FROM T"); }).Number(), 3251);
  EXPECT_EQ(testing::ErrorOf([&] {
              rows.SetFieldValue("Name", "d");
              rows.Update();
            }).Number(),
            3251);
}

}  // namespace
}  // namespace kel
