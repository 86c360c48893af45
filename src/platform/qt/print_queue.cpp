#include "platform/qt/print_queue.h"

#include <QProcess>
#include <QRegularExpression>

#include "common/error.h"

namespace kel {
namespace {

// The print system's own command, described in POSIX; so a queue is reached as every program of the
// user reaches it, and a refusal comes with its reason.
constexpr const char* kCommand = "lp";
constexpr int kMostWaiting = 120'000;  // milliseconds; a long document goes to a far server in it

[[noreturn]] void Fail(const QString& queue, const QString& reason) {
  throw Error(error_number::kPrinterError,
              QStringLiteral("the printer %1 did not take the document: %2; see whether the "
                             "printer is set up and accepts jobs, then print again")
                  .arg(queue, reason)
                  .toStdString());
}

// What the command says, "/usr/bin/lp: Destination "office" is not accepting jobs.", without its
// name.
QString Reason(QProcess& command) {
  QString said = QString::fromLocal8Bit(command.readAllStandardError()).simplified();
  said.remove(QRegularExpression(QStringLiteral("^\\S*lp: |\\.$")));
  return said.isEmpty() ? QStringLiteral("it gives no reason") : said;
}

}  // namespace

void SendToQueue(const QString& file, const QString& queue, const QString& title,
                 const QStringList& options) {
  QStringList arguments{QStringLiteral("-d"), queue};
  if (!title.isEmpty()) arguments << QStringLiteral("-t") << title;
  for (const QString& option : options) arguments << QStringLiteral("-o") << option;
  arguments << QStringLiteral("--") << file;

  QProcess command;
  command.setStandardInputFile(QProcess::nullDevice());
  command.start(QString::fromLatin1(kCommand), arguments);
  if (!command.waitForStarted()) {
    Fail(queue, QStringLiteral("the program lp, of the print system, is not installed"));
  }
  if (!command.waitForFinished(kMostWaiting)) {
    command.kill();
    command.waitForFinished(-1);
    Fail(queue, QStringLiteral("the print server does not answer"));
  }
  if (command.exitStatus() != QProcess::NormalExit || command.exitCode() != 0) {
    Fail(queue, Reason(command));
  }
}

}  // namespace kel
