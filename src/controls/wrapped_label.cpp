#include "controls/wrapped_label.h"

#include <QPainter>
#include <QTextDocument>
#include <QTextOption>
#include <cmath>

namespace kel {
namespace {

constexpr int kWordsInLine = 30;  // characters; of a label whose width nothing else decides

QTextOption Wrapping(Qt::Alignment alignment) {
  QTextOption option(alignment);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  return option;
}

}  // namespace

WrappedLabel::WrappedLabel(const QString& text, QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
  setText(text);
}

QSize WrappedLabel::TextSize(const QString& text, const QFont& font, int width) {
  QTextDocument document;
  document.setDocumentMargin(0);
  document.setDefaultFont(font);
  document.setDefaultTextOption(Wrapping(Qt::AlignLeft));
  document.setPlainText(text);
  document.setTextWidth(width);
  return {static_cast<int>(std::ceil(document.idealWidth())),
          static_cast<int>(std::ceil(document.size().height()))};
}

int WrappedLabel::heightForWidth(int width) const {
  return TextSize(text(), font(), width).height();
}

QSize WrappedLabel::sizeHint() const {
  return TextSize(text(), font(), fontMetrics().averageCharWidth() * kWordsInLine);
}

QSize WrappedLabel::minimumSizeHint() const {
  return {fontMetrics().maxWidth(), fontMetrics().lineSpacing()};
}

void WrappedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(QRectF(contentsRect()), text(), Wrapping(alignment()));
}

QString Shortened(const QString& text, qsizetype longest) {
  return text.size() <= longest ? text : text.left(longest - 1) + QChar(0x2026);
}

}  // namespace kel
