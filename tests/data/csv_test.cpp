#include "data/csv.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "data/scratch.h"

namespace kel {
namespace {

class CsvTest : public DataTest {
 protected:
  std::unique_ptr<Statement> Open(std::string_view bytes,
                                  std::size_t block = CsvReader::kBlockBytes) {
    return OpenCsv(WriteFile("table.csv", bytes), block);
  }
};

/// Heading and rows, values between bars and records between line ends: "a|b\n1|2\n".
std::string Flat(Statement& statement) {
  std::string text;
  for (int i = 0; i < statement.ColumnCount(); ++i) {
    text += (i > 0 ? "|" : "") + statement.Column(i).name;
  }
  text += '\n';
  while (statement.Step()) {
    for (int i = 0; i < statement.ColumnCount(); ++i) {
      if (i > 0) text += '|';
      text += statement.Cell(i).bytes;
    }
    text += '\n';
  }
  return text;
}

std::string Error321(const std::function<void()>& operation) {
  const Error error = ErrorOf(operation);
  EXPECT_EQ(error.Number(), 321);
  return error.Description().substr(error.Description().find("table.csv"));
}

struct ReadableCase {
  const char* name;
  std::string csv;
  std::string flat;
};

const std::vector<ReadableCase> kReadable = {
    {"LF", "a,b\n1,2\n3,4\n", "a|b\n1|2\n3|4\n"},
    {"CR LF", "a,b\r\n1,2\r\n", "a|b\n1|2\n"},
    {"no last line end", "a,b\n1,2", "a|b\n1|2\n"},
    {"no last value", "a,b\n1,", "a|b\n1|\n"},
    {"heading only", "a,b", "a|b\n"},
    {"empty values", "a,b,c\n,,\n\"\",,\"\"\n", "a|b|c\n||\n||\n"},
    {"shorter records", "a,b,c\n1\n2,\n", "a|b|c\n1||\n2||\n"},
    {"byte order mark",
     "\xEF\xBB\xBF"
     "a,b\n1,2\n",
     "a|b\n1|2\n"},
    {"quoted mark", "\xEF\xBB\xBF\"a\",b\n", "a|b\n"},
    {"mark in the middle",
     "a\n\xEF\xBB\xBF"
     "1\n",
     "a\n\xEF\xBB\xBF"
     "1\n"},
    {"quoted", "\"a\",\"b\"\r\n\"1,5\",\"2\"\r\n", "a|b\n1,5|2\n"},
    {"doubled quotes", "a,b\n\"say \"\"hi\"\"\",\"\"\"\"\n", "a|b\nsay \"hi\"|\"\n"},
    {"line ends in quotes", "a,b\n\"x\r\ny\n\",z\n", "a|b\nx\r\ny\n|z\n"},
    {"quote inside plain", "a,b\n5\" pipe,x\"\"y\n", "a|b\n5\" pipe|x\"\"y\n"},
    {"blank before quote", "a,b\n1, \"2\"\n", "a|b\n1| \"2\"\n"},
    {"lone CR is data", "a,b\nx\ry,z\r\n\r,\r\r\n", "a|b\nx\ry|z\n\r|\r\n"},
    {"CR at the end is data", "a\nx\r", "a\nx\r\n"},
    {"blank lines among several columns", "\n\r\na,b\n\n1,2\r\n\r\n\n", "a|b\n1|2\n"},
    {"blank lines in one column", "a\n1\n\n2\n", "a\n1\n\n2\n"},
    {"quoted empty is no blank line", "a,b\n\"\"\n", "a|b\n|\n"},
    {"bytes of any value", std::string("a\n\xff\0\x80\n", 6), std::string("a\n\xff\0\x80\n", 6)},
    {"quotes closed by the end", "a\n\"x\"", "a\nx\n"},
};

TEST_F(CsvTest, RecordsAreTakenApartAsRfc4180Says) {
  for (const auto& test : kReadable) EXPECT_EQ(Flat(*Open(test.csv)), test.flat) << test.name;
}

TEST_F(CsvTest, RecordsReadTheSameWhereverABlockEnds) {
  for (const auto& test : kReadable) {
    for (std::size_t block = 1; block <= test.csv.size(); ++block) {
      EXPECT_EQ(Flat(*Open(test.csv, block)), test.flat) << test.name << ", block " << block;
    }
  }
}

TEST_F(CsvTest, RecordsAcrossTheRealBlockEndStayWhole) {
  for (const int distance : {-3, -2, -1, 0, 1, 2}) {
    const std::size_t first =
        CsvReader::kBlockBytes + static_cast<std::size_t>(distance) - std::string("a,b\n1,").size();
    const std::string filler(first, 'x');
    EXPECT_EQ(Flat(*Open("a,b\n1," + filler + "\r\n\"2\"\"\",y\r\n")),
              "a|b\n1|" + filler + "\n2\"|y\n")
        << distance;
  }
  const std::string huge(3 * CsvReader::kBlockBytes, '\n');
  EXPECT_EQ(Flat(*Open("a,b\n\"" + huge + "\",2\n3,4\n")), "a|b\n" + huge + "|2\n3|4\n");
}

TEST_F(CsvTest, RecordsBehindTheLookAheadFollowInOrder) {
  std::string csv = "n,text\n";
  std::string flat = "n|text\n";
  for (int i = 0; i < 2500; ++i) {
    csv += std::to_string(i) + R"(,"v"")" + std::to_string(i) + "\"\n";
    flat += std::to_string(i) + "|v\"" + std::to_string(i) + "\n";
  }
  EXPECT_EQ(Flat(*Open(csv)), flat);
  EXPECT_EQ(Flat(*Open(csv, 16)), flat);
}

TEST_F(CsvTest, AColumnOfNumbersIsNumericByItsFirstThousandRecords) {
  std::string csv = "number,amount,text,empty,mixed,late\n";
  for (int i = 0; i < 1000; ++i) {
    csv += i == 700 ? ",\"1,250.00\",x,,5 pcs,1\n" : "7,-1.5,x,,5,1\n";
  }
  const auto statement = Open(csv + "x,1,x,1,1,late\n");
  const std::vector<FieldType> expected = {FieldType::kDouble, FieldType::kDouble,
                                           FieldType::kText,   FieldType::kText,
                                           FieldType::kText,   FieldType::kDouble};
  ASSERT_EQ(statement->ColumnCount(), 6);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(statement->Column(i).type, expected[static_cast<std::size_t>(i)])
        << statement->Column(i).name;
  }
  ASSERT_TRUE(statement->Step());
  EXPECT_EQ(statement->Cell(1).kind, CellView::Kind::kText);
  EXPECT_EQ(statement->Cell(1).bytes, "-1.5");
}

TEST_F(CsvTest, FaultyRecordsAreErrorsAtTheirStepNamingTheLine) {
  struct Case {
    const char* csv;
    const char* error;
  };
  const std::vector<Case> cases = {
      {"a,b\n1,2\n\"x\ny\",2\n1,2,3\n",
       "table.csv, line 5: 3 values, but the heading record has 2"},
      {"a,b\n1,2\n\n\"x\r\ny\" z,2\n", "table.csv, line 5: text after a closing quote"},
      {"a,b\n1,2\n\"x\",\"y\nz\n1,2\n", "table.csv, line 3: a quote is never closed"},
      {"a,b\n1,2\n\"x\ny\",\"z\n", "table.csv, line 4: a quote is never closed"},
      {"a,b\n1,2\n\"x\"\r,2\n", "table.csv, line 3: text after a closing quote"},
  };
  for (const auto& test : cases) {
    for (const std::size_t block : {CsvReader::kBlockBytes, std::size_t{5}}) {
      const auto statement = Open(test.csv, block);
      EXPECT_TRUE(statement->Step());
      EXPECT_EQ(Error321([&] {
                  while (statement->Step()) {
                  }
                }),
                test.error)
          << test.csv;
      EXPECT_FALSE(statement->Step());
    }
  }
}

TEST_F(CsvTest, LinesAreCountedBehindTheLookAheadToo) {
  std::string csv = "a\n";
  for (int i = 0; i < 3000; ++i) csv += "1\n";
  const auto statement = Open(csv + "1,2\n");
  EXPECT_EQ(Error321([&] {
              while (statement->Step()) {
              }
            }),
            "table.csv, line 3002: 2 values, but the heading record has 1");
}

TEST_F(CsvTest, AFileWithoutAHeadingRecordIsRefused) {
  for (const char* csv : {"", "\n", "\r\n\n", "\xEF\xBB\xBF"}) {
    EXPECT_EQ(Error321([&] { Open(csv); }), "table.csv has no heading record") << csv;
  }
  EXPECT_EQ(Error321([&] { Open("\"a"); }), "table.csv, line 1: a quote is never closed");
}

TEST_F(CsvTest, AFileThatCannotBeReadIsNamed) {
  const Error missing = ErrorOf([&] { OpenCsv(File("none.csv")); });
  EXPECT_EQ(missing.Number(), 53);
  EXPECT_TRUE(Contains(missing, "none.csv"));
  std::filesystem::create_directory(File("folder.csv"));
  EXPECT_TRUE(Contains(ErrorOf([&] { OpenCsv(File("folder.csv")); }), "folder.csv"));
}

TEST_F(CsvTest, APipeReadsLikeAFile) {
  ASSERT_EQ(::mkfifo(File("pipe").c_str(), 0600), 0);
  const std::string value(100'000, 'x');
  std::thread writer([&] {
    std::ofstream pipe(File("pipe"), std::ios::binary);
    pipe << "a,b\n" << value << ",1\n" << std::flush << "\"" << value << "\",2\n";
  });
  const auto statement = OpenCsv(File("pipe"), 4096);
  writer.join();
  EXPECT_EQ(Flat(*statement), "a|b\n" + value + "|1\n" + value + "|2\n");
}

}  // namespace
}  // namespace kel
