#include "vouchers/books.h"

#include <utility>

#include "common/error.h"
#include "data/sqlite.h"
#include "platform/qt/qt_sql.h"

namespace ledger {

Books::Books(std::string address) : address_(std::move(address)) { Open(); }

void Books::Open() {
  if (kel::IsDatabaseUrl(address_)) {
    connection_ = kel::Connection(kel::OpenDatabaseUrl(address_));
    return;
  }
  connection_ = kel::Connection(kel::OpenSqlite(address_, kel::Access::kReadWrite));
  connection_.Execute("PRAGMA foreign_keys = ON");  // SQLite looks at them only when asked to
}

// What is read at the beginning has to hold until the end. So SQLite locks the file at once, and
// the server refuses changes that rest on what somebody else has changed meanwhile.
void Books::Begin() {
  connection_.Execute(kel::IsDatabaseUrl(address_) ? "BEGIN ISOLATION LEVEL SERIALIZABLE"
                                                   : "BEGIN IMMEDIATE");
}

Transaction::Transaction(Books& books) : books_(books) {
  try {
    books_.Begin();
  } catch (const kel::Error&) {
    books_.Open();
    books_.Begin();
  }
}

Transaction::~Transaction() {
  if (committed_) return;
  try {
    books_.Connection().Execute("ROLLBACK");
  } catch (const kel::Error&) {
    // The connection is lost, and the changes with it.
  }
}

void Transaction::Commit() {
  books_.Connection().Execute("COMMIT");
  committed_ = true;
}

}  // namespace ledger
