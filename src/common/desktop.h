// What the logic asks of the screen.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "common/enumerations.h"

namespace kel {

class Object;

/// What a message box shows and how it ends.
struct MessageRequest {
  std::string prompt;
  int buttons = msgOK;  // a ButtonStyles value, a style and default flag together
  std::optional<std::string> title;
  IconStyles icon = msgInformation;
  bool animate = false;
  std::chrono::milliseconds unload_time{0};  // 0: stays until a button is pressed
  Object* converge_to = nullptr;             // not owned
  bool focus = true;
};

/// What a wait window shows. The bar is shown when either end is given.
struct WaitRequest {
  bool stop_button = false;
  std::optional<std::string> caption;
  std::optional<std::int32_t> min;
  std::optional<std::int32_t> max;
};

/// A note that closes by itself.
struct FlashRequest {
  std::string message;
  std::optional<std::string> subject;
  std::chrono::milliseconds interval{3000};
  AlignObject align = zurAlignCenter;
};

/// The shapes of the mouse pointer that the library sets, by their published numbers.
enum class MousePointer : int { kDefault = 0, kHourglass = 11 };

/// A wait window, open from its making to its end. Calls come on the thread that opened it.
class WaitWindow {
 public:
  virtual ~WaitWindow() = default;

  /// Puts up what the window is to show from now on.
  virtual void Show(const WaitRequest& request) = 0;
  /// Advances the bar by `step`, puts `caption` up when given and lets a press of Stop through.
  /// False when the user has stopped the work: the window is off the screen then.
  virtual bool Step(std::int32_t step, const std::optional<std::string>& caption) = 0;
};

/// The screen as the library sees it, in its pixels at 100 %. Calls come on the thread that called
/// the library.
/// An implementation throws Error when the screen refuses; it never ends the program.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Shows a message and waits for the answer: true for OK and Yes.
  virtual bool ShowMessage(const MessageRequest& request) = 0;

  /// A new wait window, not yet shown. The desktop outlives it.
  virtual std::unique_ptr<WaitWindow> MakeWaitWindow() = 0;

  virtual void Flash(const FlashRequest& request) = 0;
  virtual void SetMousePointer(MousePointer pointer) = 0;
  /// Lets pending window events run.
  virtual void DoEvents() = 0;
  /// The rectangle of a control on the screen; nothing when it has none.
  virtual std::optional<RECT> ScreenRect(Object& control) = 0;
  /// The part of the screen that windows may cover: without task bars and docks.
  virtual RECT WorkArea() = 0;
  /// Shows, one after the other and `pause` each, the outlines that lead from one rectangle to the
  /// other in `steps` equal steps; the screen looks as before afterwards.
  virtual void DrawWireRects(const RECT& from, const RECT& to, int steps,
                             std::chrono::milliseconds pause) = 0;

  /// Presses and releases a key in the window that has the focus, once its events run; nothing when
  /// there is no such window. `key_code` is a virtual key code (9 Tab, 13 Return, 65 A), `shift` 1
  /// for Shift, 2 for Ctrl and 4 for Alt, added together. Throws Error 5 for a code that no key
  /// has.
  virtual void SendKey(int key_code, int shift) = 0;
  /// Keeps a window of this program above all others. Throws Error 5 when there is none with that
  /// handle.
  virtual void ShowTopMost(std::int64_t window) = 0;
  /// Returns after that time; window events go on meanwhile.
  virtual void Delay(std::chrono::milliseconds time) = 0;
};

}  // namespace kel
