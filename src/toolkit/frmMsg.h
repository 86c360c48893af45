// The message box.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QString>
#include <QTimer>
#include <array>

#include "common/desktop.h"
#include "controls/Button.h"

namespace kel {

/// A prompt beside an icon, and one or two buttons. O and Y press the first one, C and N the
/// second; so does Escape where there is a second one. Enter presses the default button, which is
/// the one that had the focus last. Closing the window by its frame, or by its timer, says no.
///
///     frmMsg box(request);
///     if (box.Ask(desktop)) Delete(record);
class frmMsg : public QDialog {
 public:
  /// A picture of the image list.
  struct ListImage {
    const char* key;   // published
    const char* icon;  // as Icon() names it
  };
  /// The image list: the picture of IconStyles value n is the n-th one, counted from 1.
  static const std::array<ListImage, 9>& Imgs();

  explicit frmMsg(const MessageRequest& request);

  /// Shows the box until it is answered: true for OK and Yes. With `animate` it grows out of the
  /// control, with `focus` it hands the focus back to that.
  bool Ask(Desktop& desktop);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void PutPicture();
  void PutPrompt();
  void PutButtons();
  void LayOut();
  void GrowOutOf(Object& control, Desktop& desktop);
  void MakeDefault(Button* button);
  Button* ButtonFor(const QKeyEvent& event) const;
  void SwitchPicture();
  void Blink();

  const MessageRequest request_;
  const QString prompt_text_;
  const bool two_buttons_;
  QLabel* Pic_;  // children
  QPlainTextEdit* prompt_;
  Button* OK_;
  Button* Cancel_;
  Button* default_ = nullptr;
  QTimer utmr_;  // closes the box
  QTimer tmr_;   // blinks its picture
  int switches_left_;
};

}  // namespace kel
