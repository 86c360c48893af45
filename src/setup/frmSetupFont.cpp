#include "setup/frmSetupFont.h"

#include <QColorDialog>
#include <QFontDialog>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QHBoxLayout>
#include <cmath>

#include "common/number_text.h"
#include "controls/colors.h"

namespace kel {
namespace {

constexpr int kStep = 8;  // of the space between controls, in pixels at 100 %
constexpr double kTwipsPerPoint = 20;

QFont WithFlags(QFont font, const FontFlags& flags) {
  font.setBold(flags.bold);
  font.setItalic(flags.italic);
  font.setUnderline(flags.underline);
  font.setStrikeOut(flags.strikethrough);
  return font;
}

QFont ToQFont(const PrintFont& font) {
  QFont result(QString::fromStdString(font.name));
  result.setPointSizeF(font.points);
  return WithFlags(result, font.flags);
}

QString Description(const PrintFont& font) {
  QString text = QString("%1, %2").arg(QString::fromStdString(font.name),
                                       QString::fromStdString(NumberText(font.points)));
  if (font.flags.bold) text += SetupFont::tr(", Bold");
  if (font.flags.italic) text += SetupFont::tr(", Italic");
  return text;
}

}  // namespace

// Measured with one pixel for a twip: free of the screen's resolution.
CellSize FontCell(const PrintFont& font) {
  QFont measured = ToQFont(font);
  measured.setPixelSize(static_cast<int>(std::lround(font.points * kTwipsPerPoint)));
  const QFontMetricsF metrics(measured);
  return {std::round(metrics.horizontalAdvance('0')), std::round(metrics.lineSpacing())};
}

SetupFont::SetupFont() : lblFont_(new QLabel), cmdFont_(new Button(tr("C&hoose..."))) {
  lblFont_->setObjectName("lblFont");
  lblFont_->setTextFormat(Qt::PlainText);
  lblFont_->setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
  lblFont_->setMargin(kStep / 2);
  lblFont_->setAutoFillBackground(true);
  cmdFont_->setObjectName("cmdFont");
  auto* const color = new Button(tr("Co&lour..."));
  color->setObjectName("cmdColor");

  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kStep);
  layout->addWidget(lblFont_, 1);
  layout->addWidget(cmdFont_);
  layout->addWidget(color);
  connect(cmdFont_, &Button::clicked, this, &SetupFont::Choose);
  connect(color, &Button::clicked, this, &SetupFont::ChooseColor);
}

void SetupFont::Show(const PrintFont& font) {
  font_ = font;
  QPalette paper = palette();
  paper.setColor(QPalette::Window, Qt::white);
  paper.setColor(QPalette::WindowText, ToQColor(static_cast<OleColor>(font.fore_color), paper));
  lblFont_->setPalette(paper);
  QFont sample = this->font();  // in the window's size, or a large font would blow it up
  sample.setFamily(QString::fromStdString(font.name));
  lblFont_->setFont(WithFlags(sample, font.flags));
  lblFont_->setText(Description(font));
}

void SetupFont::Choose() {
  // The dialog would begin with any font when the named one is not there. Whoever changes nothing
  // keeps the name.
  QFont stands_in = ToQFont(font_);
  stands_in.setFamily(QFontInfo(stands_in).family());
  QFontDialog dialog(stands_in, this);
  dialog.setObjectName("QFontDialog");
  bool touched = false;
  connect(&dialog, &QFontDialog::currentFontChanged, this,
          [&, first = dialog.currentFont()](const QFont& font) {
            if (font != first) touched = true;
          });
  if (dialog.exec() != QDialog::Accepted || !touched) return;
  const QFont chosen = dialog.selectedFont();
  PrintFont font = font_;
  font.name = chosen.family().toStdString();
  font.points = chosen.pointSizeF() > 0 ? chosen.pointSizeF() : QFontInfo(chosen).pointSizeF();
  font.flags = {chosen.bold(), chosen.italic(), chosen.underline(), chosen.strikeOut()};
  Show(font);
  emit Changed();
}

void SetupFont::ChooseColor() {
  QColorDialog dialog(ToQColor(static_cast<OleColor>(font_.fore_color), palette()), this);
  dialog.setObjectName("QColorDialog");
  if (dialog.exec() != QDialog::Accepted) return;
  PrintFont font = font_;
  font.fore_color = static_cast<std::int32_t>(ToOleColor(dialog.selectedColor()));
  Show(font);
}

}  // namespace kel
