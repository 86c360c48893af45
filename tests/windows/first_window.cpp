// A program that leaves the application object to the library. It asks one question, from its main
// thread, from another one ("thread"), or beside an application without widgets ("core", "gui"),
// and prints the answer, the platform, and what became of its locale and environment. With "wait"
// it ends while its wait window is open.

#include <QCoreApplication>
#include <QGuiApplication>
#include <clocale>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>

#include "platform/qt/qt_application.h"
#include "platform/qt/qt_host.h"
#include "toolkit/CZURDLL.h"

namespace {

constexpr std::int32_t kUnloadTime = 20;  // milliseconds

// Ends with the process, after the windows' own library.
std::unique_ptr<kel::CZURDLL> last_toolkit;

void Ask() {
  kel::CZURDLL toolkit;
  const bool answer = toolkit.MsgBox("Day closed", kel::msgOK, std::nullopt, kel::msgInformation,
                                     false, kUnloadTime);
  std::printf("%s %s\n", answer ? "yes" : "no", toolkit.LastError() ? "failed" : "");
}

}  // namespace

int main(int argc, char** argv) {
  const std::string kind = argc > 1 ? argv[1] : "";
  if (kind == "wait") {
    kel::InstallQtHost();
    last_toolkit = std::make_unique<kel::CZURDLL>();
    last_toolkit->ShowWait(true, "Posting...", 0, 10);
    return 0;
  }
  std::unique_ptr<QCoreApplication> application;
  if (kind == "core") application = std::make_unique<QCoreApplication>(argc, argv);
  if (kind == "gui") application = std::make_unique<QGuiApplication>(argc, argv);
  std::setlocale(LC_ALL, "C");

  kel::InstallQtHost();
  if (kind == "thread") {
    std::thread(Ask).join();
  } else {
    Ask();
  }
  std::printf("application %s\n", QCoreApplication::instance() == nullptr ? "none" : "made");
  std::printf("platform %s\nscreen %d\nlocale %s\nQT_QPA_PLATFORM %s\n",
              qPrintable(QGuiApplication::platformName()), kel::HasScreen() ? 1 : 0,
              std::setlocale(LC_ALL, nullptr),
              qPrintable(qEnvironmentVariable("QT_QPA_PLATFORM", "unset")));
  return 0;
}
