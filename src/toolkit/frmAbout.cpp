#include "toolkit/frmAbout.h"

#include <QDialogButtonBox>
#include <QFont>
#include <QLabel>
#include <QVBoxLayout>

#include "controls/Button.h"
#include "controls/top_window.h"

namespace kel {
namespace {

constexpr const char* kProduct = "KELDLL";
constexpr const char* kSupportAddress = "support@keldll.example";
constexpr int kStep = 8;  // of the space around and between things, in pixels at 100 %
constexpr double kCaptionScale = 1.5;

QLabel* CaptionLabel() {
  auto* const caption = new QLabel(kProduct);
  caption->setObjectName("lblCaption");
  QFont large = caption->font();
  large.setBold(true);
  large.setPointSizeF(large.pointSizeF() * kCaptionScale);
  caption->setFont(large);
  return caption;
}

QLabel* VersionLabel() {
  auto* const version = new QLabel("Version " KELDLL_VERSION);
  version->setObjectName("lblVersion");
  return version;
}

// A link in the colour of plain text: themes that are dark often forget that of links.
QLabel* MailLabel() {
  auto* const mail = new QLabel;
  mail->setText(
      QString(R"(<a href="mailto:%1" style="color: %2">%1</a>)")
          .arg(QLatin1String(kSupportAddress), mail->palette().color(QPalette::WindowText).name()));
  mail->setObjectName("lblMail");
  mail->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  mail->setOpenExternalLinks(true);
  mail->setAccessibleName(QString("Mail to %1").arg(QLatin1String(kSupportAddress)));
  return mail;
}

}  // namespace

void frmAbout::Show(const QString& caller_tag, QWidget* owner) {
  frmAbout about(caller_tag);
  SetOwner(about, owner != nullptr ? owner : OwnerForNewWindow());
  about.exec();
}

frmAbout::frmAbout(const QString& caller_tag) {
  setObjectName("frmAbout");
  setAttribute(Qt::WA_QuitOnClose, false);
  setProperty("Tag", caller_tag);
  setWindowTitle(QString("About %1").arg(QLatin1String(kProduct)));

  auto* const ok = new Button("&OK");
  ok->setObjectName("OK");
  ok->Default(true);
  connect(ok, &Button::clicked, this, &QDialog::accept);
  auto* const buttons = new QDialogButtonBox;
  buttons->addButton(ok, QDialogButtonBox::AcceptRole);

  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(2 * kStep, 2 * kStep, 2 * kStep, 2 * kStep);
  layout->setSpacing(kStep);
  layout->addWidget(CaptionLabel());
  layout->addWidget(VersionLabel());
  layout->addWidget(MailLabel());
  layout->addSpacing(kStep);
  layout->addWidget(buttons);
  layout->addStrut(WidthForTitle(*this) - 4 * kStep);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  ok->setFocus();
}

}  // namespace kel
