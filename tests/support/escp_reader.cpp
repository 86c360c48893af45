#include "support/escp_reader.h"

#include <algorithm>
#include <cstddef>

namespace kel::testing {
namespace {

constexpr double kLinesPerInch = 6;
constexpr double kDefaultForm = 11;  // inches
constexpr int kLongestForm = 22;     // inches
constexpr int kMostLines = 127;
constexpr double kHairline = 1e-6;  // inches

constexpr char kLineFeed = '\n';
constexpr char kFormFeed = '\f';
constexpr char kReturn = '\r';
constexpr char kShiftIn = '\x0f';
constexpr char kDeviceControl2 = '\x12';
constexpr char kEscape = '\x1b';

class Printer {
 public:
  explicit Printer(std::string_view job) : job_(job) {}

  EscpPaper Read() {
    while (at_ < job_.size()) Take(Next());
    paper_.y = y_;
    return paper_;
  }

 private:
  char Next() { return at_ < job_.size() ? job_[at_++] : '\0'; }
  int NextNumber() { return static_cast<unsigned char>(Next()); }

  void Take(char byte) {
    switch (byte) {
      case kReturn:
        x_ = 0;
        break;
      case kLineFeed:
        x_ = 0;
        Advance(1 / kLinesPerInch);
        break;
      case kFormFeed:
        x_ = 0;
        Advance(form_ - y_);
        break;
      case kShiftIn:
        condensed_ = true;
        break;
      case kDeviceControl2:
        condensed_ = false;
        break;
      case kEscape:
        TakeCommand(Next());
        break;
      default:
        if (static_cast<unsigned char>(byte) >= ' ' && byte != '\x7f') Print(byte);
    }
  }

  void TakeCommand(char command) {
    switch (command) {
      case '@':
        pitch_ = kTen;
        condensed_ = bold_ = underline_ = false;
        SetForm(kDefaultForm);
        break;
      case 'C':
        TakeFormLength();
        break;
      case 'E':
      case 'F':
        bold_ = command == 'E';
        break;
      case '-':
        TakeUnderline(Next());
        break;
      case 'P':
        pitch_ = kTen;
        break;
      case 'M':
        pitch_ = kTwelve;
        break;
      case 'g':
        pitch_ = kFifteen;
        break;
      case kShiftIn:
        condensed_ = true;
        break;
      default:
        paper_.not_understood.push_back(std::string("ESC ") + command);
    }
  }

  void TakeFormLength() {
    const int lines = NextNumber();
    const int inches = lines == 0 ? NextNumber() : 0;
    if (lines >= 1 && lines <= kMostLines) SetForm(lines / kLinesPerInch);
    if (inches >= 1 && inches <= kLongestForm) SetForm(inches);
  }

  void SetForm(double inches) {
    form_ = inches;
    y_ = 0;
  }

  void TakeUnderline(char value) {
    const bool on = value == '\1' || value == '1';
    if (on || value == '\0' || value == '0') {
      underline_ = on;
    } else {
      paper_.not_understood.push_back(std::string("ESC -") + value);
    }
  }

  void Advance(double inches) {
    y_ += inches;
    if (y_ < form_ - kHairline) return;
    y_ = std::max(0.0, y_ - form_);
    ++paper_.sheet;
  }

  void Print(char byte) {
    const double width = Width();
    paper_.characters.push_back({byte, paper_.sheet, x_, y_, width, bold_, underline_});
    x_ += width;
  }

  double Width() const {
    if (!condensed_ || pitch_ == kFifteen) return 1 / pitch_;
    return pitch_ == kTwelve ? 1.0 / 20 : 7.0 / 120;
  }

  static constexpr double kTen = 10;
  static constexpr double kTwelve = 12;
  static constexpr double kFifteen = 15;

  std::string_view job_;
  std::size_t at_ = 0;
  EscpPaper paper_;
  double x_ = 0;
  double y_ = 0;
  double form_ = kDefaultForm;
  double pitch_ = kTen;
  bool condensed_ = false;
  bool bold_ = false;
  bool underline_ = false;
};

}  // namespace

EscpPaper ReadEscp(std::string_view job) { return Printer(job).Read(); }

}  // namespace kel::testing
