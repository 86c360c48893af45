// PDF files as other programs (poppler-utils) see them.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "common/text_cells.h"

namespace kel::testing {

inline std::string OutputOf(const std::string& command) {
  std::string output;
  FILE* const pipe = ::popen(command.c_str(), "r");
  std::array<char, 4096> block{};
  while (const std::size_t count = ::fread(block.data(), 1, block.size(), pipe)) {
    output.append(block.data(), count);
  }
  EXPECT_EQ(::pclose(pipe), 0) << command;
  return output;
}

inline std::string InfoOf(const std::filesystem::path& pdf) {
  return OutputOf("pdfinfo " + pdf.string()) + OutputOf("pdffonts " + pdf.string());
}

/// The words in the order of the document, one blank between them, without the marks that pdftotext
/// puts round text from right to left.
inline std::string RawText(const std::filesystem::path& pdf) {
  const std::string text = OutputOf("pdftotext -raw " + pdf.string() + " -");
  return std::regex_replace(std::regex_replace(text, std::regex("\xe2\x80[\xaa-\xae]"), ""),
                            std::regex("[ \n]+"), " ");
}

/// The lines of one page that are not empty, as they lie on paper, with one blank between words.
inline std::string LaidOutText(const std::filesystem::path& pdf, int page = 1) {
  const std::string number = std::to_string(page);
  const std::string text =
      OutputOf("pdftotext -layout -f " + number + " -l " + number + " " + pdf.string() + " -");
  return std::regex_replace(std::regex_replace(text, std::regex(" +"), " "),
                            std::regex(" ?[\f\n]( ?[\f\n])*"), "\n");
}

struct PdfWord {
  double left = 0;  // points
  double top = 0;
  double right = 0;
  double bottom = 0;
  std::string text;
};

inline std::vector<PdfWord> WordsOf(const std::filesystem::path& pdf, int page = 1) {
  const std::string number = std::to_string(page);
  const std::string boxes =
      OutputOf("pdftotext -bbox -f " + number + " -l " + number + " " + pdf.string() + " -");
  const std::regex word(
      "<word xMin=\"(.*?)\" yMin=\"(.*?)\" xMax=\"(.*?)\" yMax=\"(.*?)\">(.*?)</word>");
  std::vector<PdfWord> words;
  for (std::sregex_iterator i(boxes.begin(), boxes.end(), word), end; i != end; ++i) {
    words.push_back(
        {std::stod((*i)[1]), std::stod((*i)[2]), std::stod((*i)[3]), std::stod((*i)[4]), (*i)[5]});
  }
  return words;
}

/// One page as pixels of 1/72 inch.
struct PdfPicture {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> rgb;

  explicit PdfPicture(const std::filesystem::path& pdf, int page = 1) {
    const std::string number = std::to_string(page);
    std::istringstream picture(
        OutputOf("pdftoppm -r 72 -f " + number + " -l " + number + " " + pdf.string()));
    std::string kind;
    int most = 0;
    picture >> kind >> width >> height >> most;
    picture.ignore();
    rgb.resize(3 * static_cast<std::size_t>(width * height));
    picture.read(reinterpret_cast<char*>(rgb.data()), static_cast<std::streamsize>(rgb.size()));
  }
  bool IsInked(int x, int y, int light = 160) const {
    const std::size_t at = 3 * static_cast<std::size_t>(y * width + x);
    return rgb.at(at) < light || rgb.at(at + 1) < light || rgb.at(at + 2) < light;
  }
  /// Whether some pixel has much more of one channel (0 red, 2 blue) than of the opposite one.
  bool HasColor(std::size_t channel) const {
    constexpr int kClearly = 60;
    for (std::size_t at = 0; at + 2 < rgb.size(); at += 3) {
      if (rgb[at + channel] > rgb[at + 2 - channel] + kClearly) return true;
    }
    return false;
  }
};

}  // namespace kel::testing
