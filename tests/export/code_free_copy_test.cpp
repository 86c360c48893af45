#include "export/code_free_copy.h"

#include <gtest/gtest.h>

#include <string>

#include "common/error.h"
#include "support/test_folder.h"

namespace kel {
namespace {

std::string CodeFree(const std::string& pages) {
  const testing::TestFolder folder;
  testing::WriteFile(folder / "r.rpt", pages);
  std::string copy;
  CopyWithoutCodes(folder / "r.rpt", [&](std::string_view piece) { copy += piece; });
  return copy;
}

TEST(CodeFreeCopyTest, CodesGoAndEverythingElseStays) {
  EXPECT_EQ(CodeFree("\x01Title\r\n  Page 1\r\n\x01 \x1b"
                     "EBold\x1b"
                     "F \x1b-1under\x1b-0|\r\n\x0c\r\n"),
            "Title\r\n  Page 1\r\n Bold under|\r\n\x0c\r\n");
  // The published remover takes the digit that makes a size code of an underline code.
  EXPECT_EQ(CodeFree("\x01\x1b-12,500\x1b-0\r\n"), ",500\r\n");
  EXPECT_EQ(CodeFree("other\nline ends\n"), "other\r\nline ends\r\n");
  EXPECT_EQ(CodeFree(""), "");
}

TEST(CodeFreeCopyTest, LongFilesArriveInPiecesAndWhole) {
  std::string pages;
  std::string expected;
  for (int i = 0; i < 200'000; ++i) {
    pages +=
        "\x01\x1b"
        "E" +
        std::to_string(i) +
        "\x1b"
        "F\r\n";
    expected += std::to_string(i) + "\r\n";
  }
  EXPECT_EQ(CodeFree(pages), expected);
}

TEST(CodeFreeCopyTest, AMissingFileAndARefusingSinkAreErrors) {
  const testing::TestFolder folder;
  const auto refuse = [](std::string_view) { throw Error(error_number::kDiskFull, "full"); };
  EXPECT_THROW(CopyWithoutCodes(folder / "none.rpt", refuse), Error);
  testing::WriteFile(folder / "r.rpt", "x\r\n");
  EXPECT_THROW(CopyWithoutCodes(folder / "r.rpt", refuse), Error);
}

}  // namespace
}  // namespace kel
