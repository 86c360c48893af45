// A prepared report that tests write themselves.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engine/report_windows.h"
#include "support/test_folder.h"

namespace kel::testing {

using Lines = std::vector<std::string>;

class ReportTest : public ::testing::Test {
 protected:
  ReportTest() {
    report_.page_file = folder_ / "r.rpt";
    report_.settings.mode = "DOS";
    report_.settings.font = "10 cpi";
    report_.settings.font_size = 10;
    report_.settings.page_width = 8.5;
    report_.settings.page_height = 12;
    report_.settings.portrait = true;
    report_.job.first_page = 1;
    report_.job.page_width = 80;
  }

  /// Writes pages of equally many lines; their ends are added.
  void WritePages(const std::vector<Lines>& pages) {
    std::string file;
    auto offsets = std::make_shared<std::vector<std::uint64_t>>();
    for (const Lines& page : pages) {
      offsets->push_back(file.size());
      for (const std::string& line : page) file += line + "\r\n";
      file += "\x0c\r\n";
    }
    WriteFile(report_.page_file, file);
    report_.job.page_offsets = offsets;
    report_.job.page_count = static_cast<std::int32_t>(pages.size());
    report_.job.page_length = static_cast<std::int32_t>(pages.front().size()) + 1;
  }

  TestFolder folder_;
  ReportSnapshot report_;
};

}  // namespace kel::testing
