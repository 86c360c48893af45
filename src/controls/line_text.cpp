#include "controls/line_text.h"

#include <algorithm>
#include <limits>

#include "controls/member_arguments.h"

namespace kel {
namespace {

constexpr int kQtLimit = 32767;
constexpr int kNoLimit = std::numeric_limits<int>::max();

}  // namespace

void MakeRoom(QLineEdit& line, const QString& text) {
  if (text.size() <= line.maxLength()) return;
  if (MaxLength(line) != 0) ThrowInvalidValue("Text is longer than MaxLength");
  line.setMaxLength(kNoLimit);
}

void SetText(QLineEdit& line, const QString& text) {
  MakeRoom(line, text);
  line.setText(text);
}

int MaxLength(const QLineEdit& line) { return line.maxLength() >= kQtLimit ? 0 : line.maxLength(); }

void MaxLength(QLineEdit& line, const Value& value) {
  const int most = NumberWithin(value, 0, kNoLimit, "MaxLength");
  line.setMaxLength(most == 0 ? std::max(kQtLimit, line.maxLength()) : most);
}

int SelStart(const QLineEdit& line) {
  return line.hasSelectedText() ? line.selectionStart() : line.cursorPosition();
}

void SelStart(QLineEdit& line, const Value& value) {
  line.deselect();
  line.setCursorPosition(NumberWithin(value, 0, kNoLimit, "SelStart"));
}

void SelLength(QLineEdit& line, const Value& value) {
  const int start = SelStart(line);
  const int left = static_cast<int>(line.text().size()) - start;
  line.setSelection(start, std::min(NumberWithin(value, 0, kNoLimit, "SelLength"), left));
}

bool EnterText(QAbstractSpinBox& box, const QString& text) {
  auto* edit = box.findChild<QLineEdit*>();
  const QString before = box.text();
  edit->setText(text);
  if (!box.hasAcceptableInput()) {
    edit->setText(before);
    return false;
  }
  box.interpretText();
  return true;
}

}  // namespace kel
