// Types vouchers into a firm's books.
//
//     ledger_vouchers BOOKS.db
//     ledger_vouchers postgresql://user@host:port/name

#include <QApplication>
#include <cstdio>

#include "common/error.h"
#include "platform/qt/qt_host.h"
#include "vouchers/books.h"
#include "vouchers/frmVoucher.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (QApplication::arguments().size() != 2) {
    std::fputs("usage: ledger_vouchers BOOKS.db | postgresql://user@host:port/name\n", stderr);
    return 2;
  }
  kel::InstallQtHost();
  try {
    ledger::Books books(QApplication::arguments().at(1).toStdString());
    ledger::frmVoucher window(books);
    window.show();
    return QApplication::exec();
  } catch (const kel::Error& failure) {
    std::fprintf(stderr, "ledger_vouchers: %s\n", failure.what());
    return 1;
  }
}
