// TextBox: lines and larger texts.

#include <QAbstractSpinBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextOption>
#include <algorithm>
#include <array>
#include <limits>

#include "controls/line_members.h"
#include "controls/line_text.h"
#include "controls/text_alignment.h"
#include "controls/widget_members.h"

namespace kel {
namespace {

QLineEdit& Line(Control& control) { return control.As<QLineEdit>(); }

Value Password(Control& control, Indexes /*indexes*/) {
  return Line(control).echoMode() == QLineEdit::Normal ? "" : "*";
}

void SetPassword(Control& control, const Value& value, Indexes /*indexes*/) {
  Line(control).setEchoMode(value.ToText().empty() ? QLineEdit::Normal : QLineEdit::Password);
}

constexpr std::array kLineEdit = Joined(
    kLineMembers<Line>,
    std::array{
        ControlMember{"Text", [](Control& c, Indexes) { return ValueOf(Line(c).text()); },
                      [](Control& c, const Value& v, Indexes) { SetText(Line(c), QTextOf(v)); }},
        ControlMember{
            "Alignment", [](Control& c, Indexes) { return AlignmentValue(Line(c).alignment()); },
            [](Control& c, const Value& v, Indexes) { Line(c).setAlignment(AlignmentOf(v)); }},
        ControlMember{"PasswordChar", Password, SetPassword},
    });

// What both classes of larger texts can do, as calls on whichever it is.
template <typename Operation>
decltype(auto) WithEdit(Control& control, Operation operation) {
  if (auto* plain = qobject_cast<QPlainTextEdit*>(&control.Widget())) return operation(*plain);
  return operation(control.As<QTextEdit>());
}

QTextDocument& Document(Control& control) {
  return WithEdit(control, [](auto& edit) -> QTextDocument& { return *edit.document(); });
}

QTextCursor Cursor(Control& control) {
  return WithEdit(control, [](auto& edit) { return edit.textCursor(); });
}

void SetCursor(Control& control, const QTextCursor& cursor) {
  WithEdit(control, [&cursor](auto& edit) { edit.setTextCursor(cursor); });
}

QString WithLineFeeds(QString text) {
  text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
  text.replace(QChar::LineSeparator, QLatin1Char('\n'));
  return text;
}

// toPlainText would make blanks of no-break spaces.
Value EditText(Control& control, Indexes /*indexes*/) {
  return ValueOf(WithLineFeeds(Document(control).toRawText()));
}

void SetEditText(Control& control, const Value& value, Indexes /*indexes*/) {
  const QString text = QTextOf(value);
  WithEdit(control, [&text](auto& edit) { edit.setPlainText(text); });
}

int LastPosition(Control& control) { return Document(control).characterCount() - 1; }

void SetEditSelStart(Control& control, const Value& value, Indexes /*indexes*/) {
  const int start = NumberWithin(value, 0, std::numeric_limits<int>::max(), "SelStart");
  QTextCursor cursor = Cursor(control);
  cursor.setPosition(std::min(start, LastPosition(control)));
  SetCursor(control, cursor);
}

void SetEditSelLength(Control& control, const Value& value, Indexes /*indexes*/) {
  const int length = NumberWithin(value, 0, std::numeric_limits<int>::max(), "SelLength");
  QTextCursor cursor = Cursor(control);
  const int start = cursor.selectionStart();
  cursor.setPosition(start);
  cursor.setPosition(start + std::min(length, LastPosition(control) - start),
                     QTextCursor::KeepAnchor);
  SetCursor(control, cursor);
}

void SetEditAlignment(Control& control, const Value& value, Indexes /*indexes*/) {
  QTextOption option = Document(control).defaultTextOption();
  option.setAlignment(AlignmentOf(value));
  Document(control).setDefaultTextOption(option);
}

constexpr std::array kTextEdit = {
    ControlMember{"Text", EditText, SetEditText},
    ControlMember{"SelStart",
                  [](Control& c, Indexes) -> Value { return Cursor(c).selectionStart(); },
                  SetEditSelStart},
    ControlMember{"SelLength",
                  [](Control& c, Indexes) -> Value {
                    return Cursor(c).selectionEnd() - Cursor(c).selectionStart();
                  },
                  SetEditSelLength},
    ControlMember{
        "SelText",
        [](Control& c, Indexes) { return ValueOf(WithLineFeeds(Cursor(c).selectedText())); },
        [](Control& c, const Value& v, Indexes) { Cursor(c).insertText(QTextOf(v)); }},
    ControlMember{"Locked",
                  [](Control& c, Indexes) -> Value {
                    return WithEdit(c, [](auto& edit) { return edit.isReadOnly(); });
                  },
                  [](Control& c, const Value& v, Indexes) {
                    WithEdit(c, [locked = v.ToBoolean()](auto& edit) { edit.setReadOnly(locked); });
                  }},
    ControlMember{"Alignment",
                  [](Control& c, Indexes) {
                    return AlignmentValue(Document(c).defaultTextOption().alignment());
                  },
                  SetEditAlignment},
};

}  // namespace

ControlMembers LineEditMembers() { return kLineEdit; }

ControlMembers TextEditMembers() { return kTextEdit; }

}  // namespace kel
