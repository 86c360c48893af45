// Plain text on a window, of any length.
#pragma once

#include <QFont>
#include <QLabel>
#include <QString>

namespace kel {

/// A label that breaks its text between words, and inside a word only where that is wider than the
/// label; nothing of the text is ever cut off. The text is plain: neither "&" nor "<" mean
/// anything.
class WrappedLabel : public QLabel {
 public:
  explicit WrappedLabel(const QString& text = {}, QWidget* parent = nullptr);

  /// The room that `text` takes when no line is wider than `width`.
  static QSize TextSize(const QString& text, const QFont& font, int width);

  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// The text, or the beginning of one longer than `longest` with an ellipsis in its last place.
QString Shortened(const QString& text, qsizetype longest);

}  // namespace kel
