#include "platform/qt/qt_application.h"

#include <QApplication>
#include <QByteArray>
#include <QThread>
#include <array>
#include <clocale>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "common/error.h"

namespace kel {
namespace {

constexpr const char* kPlatform = "QT_QPA_PLATFORM";
constexpr const char* kPlatformTheme = "QT_QPA_PLATFORMTHEME";
constexpr const char* kOffscreen = "offscreen";
constexpr const char* kMinimal = "minimal";

// Loading the library is the main thread's business, and an application on a thread that ends
// before the program does would be of no use.
const std::thread::id kMainThread = std::this_thread::get_id();

bool no_display_found = false;  // written before the application can be seen

/// Sets an environment variable, or removes it, for as long as it lives.
class ChangedVariable {
 public:
  ChangedVariable(const char* name, const std::optional<QByteArray>& value) : name_(name) {
    if (qEnvironmentVariableIsSet(name)) before_ = qgetenv(name);
    Put(value);
  }
  ~ChangedVariable() { Put(before_); }
  ChangedVariable(const ChangedVariable&) = delete;
  ChangedVariable& operator=(const ChangedVariable&) = delete;

 private:
  void Put(const std::optional<QByteArray>& value) {
    if (value) {
      qputenv(name_, *value);
    } else {
      qunsetenv(name_);
    }
  }

  const char* name_;
  std::optional<QByteArray> before_;
};

// Qt sets the program's locale from the environment, and with it how the program reads and writes
// decimal fractions.
class KeptLocale {
 public:
  KeptLocale() : before_(std::setlocale(LC_ALL, nullptr)) {}
  ~KeptLocale() { std::setlocale(LC_ALL, before_.c_str()); }
  KeptLocale(const KeptLocale&) = delete;
  KeptLocale& operator=(const KeptLocale&) = delete;

 private:
  std::string before_;
};

// Qt tries the platforms of a list one after the other and ends the program when none works; the
// last one always does.
QByteArray PlatformList() {
  const QByteArray chosen = qgetenv(kPlatform);
  if (!chosen.isEmpty()) return chosen + ";" + kOffscreen;
  if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) return "wayland;xcb;offscreen";
  if (!qEnvironmentVariableIsEmpty("DISPLAY")) return "xcb;offscreen";
  return kOffscreen;
}

bool IsOffscreen() {
  const QString platform = QGuiApplication::platformName();
  return platform == kOffscreen || platform == kMinimal;
}

void MakeApplication() {
  static int argument_count = 1;
  static std::array<char, 7> program = {'k', 'e', 'l', 'd', 'l', 'l', '\0'};
  static std::array<char*, 2> arguments = {program.data(), nullptr};
  // Never destroyed: windows may be about until the very end of the program.
  static QApplication* application = nullptr;

  const QByteArray chosen = qgetenv(kPlatform);
  const bool offscreen_chosen = chosen.contains(kOffscreen) || chosen.contains(kMinimal);
  const KeptLocale locale;
  const ChangedVariable platform(kPlatform, PlatformList());
  // A theme out of the environment is made on every platform; that of GTK ends the program where
  // there is no display. A desktop's own theme is found without it.
  const ChangedVariable theme(kPlatformTheme, std::nullopt);
  application = std::make_unique<QApplication>(argument_count, arguments.data()).release();
  application->setQuitOnLastWindowClosed(false);
  no_display_found = IsOffscreen() && !offscreen_chosen;
}

}  // namespace

bool EnsureApplication() {
  static std::mutex making;
  const std::lock_guard lock(making);
  if (QCoreApplication::instance() == nullptr) {
    if (QCoreApplication::closingDown() || std::this_thread::get_id() != kMainThread) return false;
    MakeApplication();
  }
  const auto* const application = qobject_cast<QApplication*>(QCoreApplication::instance());
  return application != nullptr && application->thread() == QThread::currentThread();
}

bool HasScreen() { return EnsureApplication() && !IsOffscreen(); }

bool CanShowWindows() { return EnsureApplication() && !no_display_found; }

void RequireWindows() {
  if (CanShowWindows()) return;
  throw Error(error_number::kInvalidProcedureCall,
              "no window can be shown: there is no screen, or this is not the thread of a Qt "
              "application with widgets");
}

}  // namespace kel
