// Format texts such as "###0.00" and "dd/mmmm/yyyy".
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "common/value.h"

namespace kel {

/// A format text by the rules of the Format function of the Visual Basic language: number formats
/// with up to four sections (0 # . , % E+ E- and literals), date and time formats (d dd ddd dddd
/// m mm mmm mmmm y yy yyyy h hh n nn s ss AM/PM c ddddd ttttt ...), text formats (@ & < > !) and
/// the named ones ("Fixed", "Standard", "Percent", "Long Date", "Yes/No", ...). Parsed once, asked
/// of many values.
///
///     const FormatPattern amount("#,##0.00");
///     std::string text;
///     amount.AppendNumber("-1250.5", text);  // -1,250.50
///
/// No format text is refused: what has no meaning stands for itself. The first mark tells the kind
/// of a format: a digit placeholder a number format, a letter of a date a date format, @ or & a
/// text format. One that begins as a date format and has digit placeholders later ("Rs 0.00",
/// "yyyy-mm-dd 00:00:00") is a date format to dates and a number format to numbers.
///
/// Numbers are rounded half away from zero on their decimal text; one that becomes zero is shown as
/// zero, without a sign. Names of days and months are English; the decimal point is ".", groups are
/// of three digits with ",". The short date is dd/mm/yyyy, the long date "Thursday, 05 March 2009",
/// the long time 14:05:09; times are rounded to the second. Weeks begin on Sunday, the first one
/// has 1 January. Currency has no symbol, and parentheses when it is negative. docs/formats.md has
/// all marks.
class FormatPattern {
 public:
  /// The empty format: values as ToText shows them.
  FormatPattern();
  explicit FormatPattern(std::string_view format);
  ~FormatPattern();
  FormatPattern(FormatPattern&&) noexcept;
  FormatPattern& operator=(FormatPattern&&) noexcept;

  bool IsEmpty() const noexcept;

  /// The value as text. Null, Empty and Missing are "", but for what a number format's fourth
  /// section or a text format's second one says. A text that is a number is taken as that by a
  /// number format, and one that is a date, day first, by a date format; else it stays as it is. A
  /// number is a date's serial number to a date format, and the other way round. Objects and arrays
  /// are Error 13.
  std::string Format(const Value& value) const;

  // The same for many values of one kind; the text is appended to `text`.

  /// `decimal` is a number as NumberText writes it: "-1250.5", "1e+300".
  void AppendNumber(std::string_view decimal, std::string& text) const;
  /// A day outside the years 100 to 9999 is appended as its number.
  void AppendDate(Date date, std::string& text) const;
  void AppendText(std::string_view value, std::string& text) const;
  void AppendNull(std::string& text) const;

 private:
  struct Parsed;
  std::unique_ptr<const Parsed> parsed_;  // null for the empty format
};

}  // namespace kel
