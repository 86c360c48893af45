#include "toolkit/CZURDLL.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <utility>

#include "common/desktop.h"
#include "common/host.h"
#include "common/temp_folder.h"
#include "toolkit/CZURDLL_p.h"
#include "toolkit/error_log.h"

namespace kel {
namespace {

constexpr const char* kLogTitle = "Error Log";
constexpr const char* kNoLocation = "[Not Specified]";
constexpr std::int32_t kLeastFlash = 1;  // milliseconds

// What the common error path of a thread is at. Failures come one inside the other: a handler or a
// message box may run operations that fail too.
struct ErrorPath {
  bool busy = false;
  std::optional<Error> current;  // the failure that is being reported
};

ErrorPath& ThisThread() {
  thread_local ErrorPath path;
  return path;
}

class ErrorPathScope {
 public:
  explicit ErrorPathScope(const Error& failure) {
    ThisThread().busy = true;
    ThisThread().current = failure;
  }
  ~ErrorPathScope() { ThisThread() = ErrorPath(); }
  ErrorPathScope(const ErrorPathScope&) = delete;
  ErrorPathScope& operator=(const ErrorPathScope&) = delete;
};

// The location of an operation that has one of its own.
Value LocationOf(const std::string& name) { return name.empty() ? Value::Missing() : Value(name); }

std::string LogLocation(const Value& location) {
  if (location.IsMissing()) return kNoLocation;
  return std::string(1, '[').append(location.ToText()).append(1, ']');
}

std::string FailureText(const Error& failure) {
  return std::to_string(failure.Number()) + " : " + failure.Description();
}

void ResetMousePointer() {
  Quietly([] { CurrentHost().desktop->SetMousePointer(MousePointer::kDefault); });
}

}  // namespace

CZURDLL::CZURDLL() {
  try {
    PrepareTempFolder();
  } catch (...) {
    last_error_ = CaughtFailure();
  }
}

CZURDLL::~CZURDLL() = default;

void CZURDLL::OnError(ErrorHandler handler) { error_handler_ = std::move(handler); }

std::string CZURDLL::GetDLLTempPath() {
  return Guarded("DLL.GetDLLTempPath", std::string(), [] { return TempFolder().string(); });
}

bool CZURDLL::MsgBox(const std::string& Prompt, int Buttons,
                     const std::optional<std::string>& Title, IconStyles Icons, bool Animate,
                     std::int32_t UnloadTime, Object* ConvergeToCtrl, bool Focus) {
  return Guarded("DLL.MsgBox", false, [&] {
    MessageRequest request;
    request.prompt = Prompt;
    request.buttons = Buttons;
    request.title = Title;
    request.icon = Icons;
    request.animate = Animate;
    request.unload_time = std::chrono::milliseconds(std::max(UnloadTime, 0));
    request.converge_to = ConvergeToCtrl;
    request.focus = Focus;
    return CurrentHost().desktop->ShowMessage(request);
  });
}

void CZURDLL::ShowWait(bool STOPBUTTON, const std::optional<std::string>& Caption,
                       std::optional<std::int32_t> Min, std::optional<std::int32_t> Max) {
  last_error_.reset();
  wait_stopped_ = false;
  Quietly([&] {
    if (!wait_) {
      wait_desktop_ = CurrentHost().desktop;
      wait_ = wait_desktop_->MakeWaitWindow();
    }
    wait_->Show({STOPBUTTON, Caption, Min, Max});
  });
}

bool CZURDLL::StepWait(std::int32_t STEP, const std::optional<std::string>& Caption) {
  return Guarded("DLL.StepWait", false, [&] {
    if (wait_ && wait_->Step(STEP, Caption)) return true;
    if (wait_) wait_stopped_ = true;
    UnloadWait();
    return false;
  });
}

void CZURDLL::UnloadWait() {
  last_error_.reset();
  wait_.reset();
}

void CZURDLL::Flash(const std::string& Message, const std::optional<std::string>& Subject,
                    std::int32_t Interval, AlignObject Align) {
  Guarded("DLL.Flash", [&] {
    const std::chrono::milliseconds interval(std::max(Interval, kLeastFlash));
    CurrentHost().desktop->Flash({Message, Subject, interval, Align});
  });
}

void CZURDLL::ReportCaught(const char* location) noexcept {
  Quietly([&] { ReportFailure(CaughtFailure(), location); });
}

void CZURDLL::ReportFailure(const Error& reported, const std::string& ErrLocation) noexcept {
  const Error failure = reported;  // it may be LastError's own, which a handler's operations change
  last_error_ = failure;
  Quietly([&] {
    if (ThisThread().busy) {
      AppendToErrorLog(TempFolder(), LogLocation(LocationOf(ErrLocation)), FailureText(failure));
      return;
    }
    const ErrorPathScope scope(failure);
    bool respond = true;
    HandleError(respond, ErrLocation);
  });
  // Without closing it: a loop of an operation that called back may still be on it.
  recordset_.reset();
  // Again, because operations that the handler called have had their own results meanwhile.
  last_error_ = failure;
}

void CZURDLL::HandleError(bool& Respond, const std::string& ErrLocation) {
  const Error failure = *ThisThread().current;
  ResetMousePointer();
  RaiseError(failure, Respond);
  if (Respond) ERRORLOG(LocationOf(ErrLocation), FailureText(failure), true);
}

void CZURDLL::RaiseError(const Error& failure, bool& Response) const {
  if (!error_handler_) return;
  const ErrorHandler handler = error_handler_;  // it may set another one
  std::int32_t number = failure.Number();
  std::string description = failure.Description();
  Quietly([&] { handler(number, description, Response); });
}

void CZURDLL::ERRORLOG(Value&& ErrLocation, const std::string& ErrDesc, bool Respond) {
  ERRORLOG(ErrLocation, ErrDesc, Respond);
}

void CZURDLL::ERRORLOG(Value& ErrLocation, const std::string& ErrDesc, bool Respond) {
  // On the error path only its own failure counts: the exception it came by is still there after
  // a log entry has cleared it.
  const bool handling =
      ThisThread().busy ? ThisThread().current.has_value() : std::current_exception() != nullptr;
  if (ErrDesc.empty() && !handling) return;
  ResetMousePointer();
  wait_.reset();
  ErrLocation = LogLocation(ErrLocation);

  std::optional<Error> unshown;
  if (Respond) {
    try {
      MessageRequest request;
      request.prompt = ErrDesc;
      request.title = kLogTitle;
      request.icon = msgCritical;
      CurrentHost().desktop->ShowMessage(request);
    } catch (...) {
      unshown = CaughtFailure();
    }
  }
  AppendToErrorLog(TempFolder(), ErrLocation.String(), ErrDesc);
  if (unshown) AppendToErrorLog(TempFolder(), "[DLL.MsgBox]", FailureText(*unshown));
  ThisThread().current.reset();
}

CZURDLL& SharedToolkit() {
  thread_local CZURDLL toolkit;
  return toolkit;
}

Error CaughtFailure() {
  try {
    throw;
  } catch (const Error& failure) {
    return failure;
  } catch (const std::bad_alloc&) {
    return {error_number::kOutOfMemory, "Out of memory"};
  } catch (const std::exception& failure) {
    return {error_number::kInternalError, failure.what()};
  } catch (...) {
    return {error_number::kInternalError, "Internal error"};
  }
}

}  // namespace kel
