// What a dot-matrix printer does with the bytes it is sent.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kel::testing {

/// A printed character: where its cell's upper left corner lies on the paper.
struct EscpCharacter {
  char byte = 0;
  int sheet = 0;  // counted from 0
  double x = 0;   // inches from the left margin
  double y = 0;   // inches from the top of the form
  double width = 0;
  bool bold = false;
  bool underline = false;
};

struct EscpPaper {
  std::vector<EscpCharacter> characters;  // as they came; blanks are there, too
  int sheet = 0;                          // where the paper stands in the end
  double y = 0;
  std::vector<std::string> not_understood;  // codes that the reader does not know
};

/// Reads a job as the ESC/P command set (9-pin printers) defines it:
///
///     ESC "C" NUL n   form of n inches, 1 to 22; ESC "C" n: of n lines, 1 to 127. The current line
///                     becomes the top of the form
///     ESC "P" "M" "g" 10, 12, 15 characters per inch
///     SI, ESC SI      condensed: 17.14 per inch, 20 from 12; DC2 ends it
///     ESC "E" "F"     bold on, off
///     ESC "-" n       underline on (1, "1"), off (0, "0")
///     ESC "@"         as switched on; the current line becomes the top of the form
///     CR, LF, FF      to the left margin; LF a line further, FF to the top of the next form
///
/// A value out of range leaves its setting alone. Any other control code, Chr(1) among them, has no
/// meaning: it prints nothing and takes no room. A line reaches as far as its characters do: the
/// reader does not turn it over at the end of the carriage.
EscpPaper ReadEscp(std::string_view job);

}  // namespace kel::testing
