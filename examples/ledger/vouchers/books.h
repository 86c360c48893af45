// The books of a firm, open for changing.
#pragma once

#include <string>

#include "data/Connection.h"

namespace ledger {

/// An SQLite file that make_books.py has made ("books.db"), or the database of a server with the
/// tables of books_postgresql.sql ("postgresql://user@host/name").
///
///     Books books("books.db");
///     Transaction changes(books);
///     books.Connection().Execute("DELETE FROM Entry WHERE VoucherId = 17");
///     changes.Commit();
class Books {
 public:
  /// Throws kel::Error when they cannot be opened.
  explicit Books(std::string address);

  kel::Connection& Connection() { return connection_; }

 private:
  friend class Transaction;

  void Open();
  void Begin();

  std::string address_;
  kel::Connection connection_;
};

/// Changes that are made all together or, unless they are committed, not at all.
class Transaction {
 public:
  /// Opens the books again first when their server has dropped the connection.
  explicit Transaction(Books& books);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit();

 private:
  Books& books_;
  bool committed_ = false;
};

}  // namespace ledger
