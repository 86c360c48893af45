// What a recordset does on every database: each test folder runs these on the databases it has.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "data/Recordset.h"
#include "data/ado_errors.h"
#include "support/errors.h"

namespace kel::testing {

/// Two connections of one database, as two people have them, and how it declares a key that it
/// makes itself.
struct TwoUsers {
  Connection& own;
  Connection& other;
  std::string generated_key = "INTEGER PRIMARY KEY";
  bool returns_rows = true;  // what the database made of a new row is known
};

/// All rows of a statement: cells joined by "|", rows by ";".
inline std::string Rows(Connection& connection, std::string_view sql) {
  std::string text;
  Recordset rows;
  for (rows.Open(sql, connection); !rows.EndOfFile(); rows.MoveNext()) {
    if (!text.empty()) text += ';';
    for (int i = 0; i < rows.FieldCount(); ++i) {
      text += (i > 0 ? "|" : "") + std::string(rows.FieldText(i));
    }
  }
  return text;
}

/// Field 0 of the rows as they are seen, from the first to the last.
inline std::string Seen(Recordset& rows) {
  std::string text;
  if (rows.RecordCount() == 0) return text;
  for (rows.MoveFirst(); !rows.EndOfFile(); rows.MoveNext()) text += rows.FieldText(0);
  return text;
}

inline void MakeAccounts(const TwoUsers& users) {
  users.own.Execute(
      "CREATE TABLE Acc(Code INTEGER PRIMARY KEY, Name VARCHAR(40), Opened DATE,"
      " Amount NUMERIC(12,2))");
  users.own.Execute(
      "INSERT INTO Acc VALUES (1, 'cash', '2026-03-31', 10.10),"
      " (2, 'Bank', NULL, -5), (3, 'ANIL', '2025-01-02', NULL),"
      " (4, 'anil & co', '2026-04-01', 0.3), (5, NULL, NULL, 10.1)");
}

inline void MovesSortsFiltersAndFinds(const TwoUsers& users) {
  MakeAccounts(users);
  Recordset rows;
  rows.Open("SELECT * FROM Acc ORDER BY Code", users.own, CursorType::kKeyset);
  EXPECT_EQ(rows.RecordCount(), 5);
  EXPECT_EQ(rows.AbsolutePosition(), 1);
  const Value first = rows.Bookmark();
  rows.Move(3);
  EXPECT_EQ(rows.FieldText(0), "4");
  rows.Move(-99);
  EXPECT_TRUE(rows.BeginOfFile() && !rows.EndOfFile());
  EXPECT_EQ(ErrorOf([&] { rows.MovePrevious(); }).Number(), 3021);
  EXPECT_EQ(ErrorOf([&] { rows.FieldText(0); }).Number(), 3021);
  rows.MoveNext();
  EXPECT_EQ(rows.FieldText(0), "1");
  rows.MoveLast();
  rows.MoveNext();
  EXPECT_TRUE(rows.EndOfFile() && !rows.BeginOfFile());
  EXPECT_EQ(ErrorOf([&] { rows.MoveNext(); }).Number(), 3021);
  rows.Move(1, first);
  EXPECT_EQ(rows.FieldText(0), "2");
  rows.Move(-1, bookmark::kLast);
  EXPECT_EQ(rows.FieldText(0), "4");

  const auto sorted = [&](const char* sort) {
    rows.Sort(sort);
    return Seen(rows);
  };
  EXPECT_EQ(sorted("[Name]"), "53421");
  EXPECT_EQ(sorted("Amount DESC, Code ASC"), "15423");
  EXPECT_EQ(sorted("[Opened] desc"), "41325");
  EXPECT_EQ(ErrorOf([&] { rows.Sort("Nobody"); }).Number(), 3265);
  EXPECT_EQ(rows.Sort(), "[Opened] desc");
  const auto filtered = [&](const Value& filter) {
    rows.Filter(filter);
    return Seen(rows);
  };
  EXPECT_EQ(filtered("Name Like 'a*' OR [Name] = Null"), "435");
  EXPECT_EQ(filtered("Amount = 10.1"), "15");
  EXPECT_EQ(filtered("Opened >= #31/March/2026# AND Amount < 5"), "4");
  EXPECT_EQ(filtered("Code > 9"), "");
  EXPECT_TRUE(rows.BeginOfFile() && rows.EndOfFile());
  EXPECT_EQ(ErrorOf([&] { rows.Filter("Code >"); }).Number(), 3001);
  EXPECT_EQ(rows.Filter(), Value("Code > 9"));
  rows.Sort("");
  EXPECT_EQ(filtered(Value::Array{first}), "1");
  EXPECT_EQ(filtered(0), "12345");

  rows.MoveFirst();
  const auto found = [&] { return rows.EndOfFile() ? "-" : std::string(rows.FieldText(0)); };
  rows.Find("Name Like 'anil%'");
  EXPECT_EQ(found(), "3");
  rows.Find("Name Like 'anil%'", 1);
  EXPECT_EQ(found(), "4");
  rows.Find("Name Like 'anil%'", 1, SearchDirection::kBackward);
  EXPECT_EQ(found(), "3");
  rows.Find("Code > 3", 0, SearchDirection::kBackward, bookmark::kLast);
  EXPECT_EQ(found(), "5");
  rows.Find("Code = 9", 0, SearchDirection::kForward, first);
  EXPECT_EQ(found(), "-");
  EXPECT_EQ(ErrorOf([&] { rows.Find("Code = 1"); }).Number(), 3021);
  rows.MoveFirst();
  rows.Find("Code = 9", 1, SearchDirection::kBackward);
  EXPECT_TRUE(rows.BeginOfFile());
  rows.MoveFirst();
  EXPECT_EQ(ErrorOf([&] { rows.Find("Code = 1 AND Code = 1"); }).Number(), 3001);
}

inline void AddsChangesAndDeletes(const TwoUsers& users) {
  users.own.Execute(
      "CREATE TABLE Ledger(Id " + users.generated_key +
      ", Name VARCHAR(40) NOT NULL, Due DATE, Amount NUMERIC(20,2) DEFAULT 7, Paid BOOLEAN)");
  const char* const all = "SELECT Name, Due, Amount, Paid FROM Ledger ORDER BY Name";
  Recordset rows;
  rows.Open("SELECT * FROM Ledger", users.own, CursorType::kKeyset, LockType::kOptimistic);
  EXPECT_TRUE(rows.BeginOfFile() && rows.EndOfFile());
  rows.AddNew();
  EXPECT_EQ(rows.EditMode(), EditMode::kAdd);
  rows.SetFieldValue("name", "O'Brien \"and\" [sons]");
  rows.SetFieldValue("Due", "31/3/2026");
  rows.SetFieldValue("Paid", true);
  rows.Update();
  EXPECT_EQ(rows.EditMode(), EditMode::kNone);
  if (users.returns_rows) {
    EXPECT_NE(rows.FieldText(0), "");
    EXPECT_EQ(rows.FieldValue("Amount"), Value(Currency{70000}));
  }
  rows.AddNew();
  rows.SetFieldValue("Name", "B");
  rows.SetFieldValue("Amount", "12,34,567.10");
  rows.MoveFirst();  // writes the new row
  EXPECT_EQ(rows.RecordCount(), 2);
  EXPECT_EQ(Rows(users.other, all), "B||1234567.1|;O'Brien \"and\" [sons]|2026-03-31|7|True");

  // What is refused leaves the edit open and the table as it was.
  rows.AddNew();
  EXPECT_NE(ErrorOf([&] { rows.Update(); }).Description().find("ame"), std::string::npos);
  EXPECT_EQ(rows.EditMode(), EditMode::kAdd);
  rows.CancelUpdate();
  EXPECT_EQ(ErrorOf([&] { rows.SetFieldValue("Due", "soon"); }).Number(), 13);
  EXPECT_EQ(rows.EditMode(), EditMode::kNone);

  rows.Requery();
  rows.Sort("Name");
  rows.SetFieldValue("Amount", Currency{12'345'678'901'2300});
  rows.SetFieldValue("Due", "9999-12-31");
  EXPECT_EQ(rows.FieldValue("Amount").ToText(), "12345678901.23");
  rows.Update();
  rows.SetFieldValue("Paid", false);
  rows.Update();
  EXPECT_EQ(Rows(users.other, "SELECT Amount, Due, Paid FROM Ledger WHERE Name = 'B'"),
            "12345678901.23|9999-12-31|False");
  rows.Delete();
  EXPECT_FALSE(rows.EndOfFile());
  EXPECT_EQ(ErrorOf([&] { rows.FieldText(0); }).Number(), kRowIsDeleted);
  rows.MoveNext();
  EXPECT_EQ(rows.FieldText(1), "O'Brien \"and\" [sons]");
  rows.Delete();
  rows.MoveNext();
  EXPECT_TRUE(rows.BeginOfFile() && rows.EndOfFile());
  EXPECT_EQ(Rows(users.other, all), "");
}

inline void ARowChangedByOthersIsNotOverwritten(const TwoUsers& users) {
  MakeAccounts(users);
  users.own.Execute("CREATE TABLE Bare(Name VARCHAR(9), N DOUBLE PRECISION)");
  users.own.Execute("INSERT INTO Bare VALUES ('a', 0.1), ('a', 0.1), ('b', 0.30000000000000004)");
  Recordset rows;
  rows.Open("SELECT * FROM Acc ORDER BY Code", users.own, CursorType::kKeyset,
            LockType::kOptimistic);
  users.other.Execute("UPDATE Acc SET Opened = '2026-05-05' WHERE Code = 1");
  rows.SetFieldValue("Name", "mine");
  EXPECT_EQ(ErrorOf([&] { rows.Update(); }).Number(), kRowNotFound);
  EXPECT_EQ(ErrorOf([&] { rows.Delete(); }).Number(), kRowNotFound);
  rows.CancelUpdate();
  EXPECT_EQ(rows.FieldText(2), "2026-03-31");
  rows.Resync(AffectRecords::kCurrent);
  EXPECT_EQ(rows.FieldText(2), "2026-05-05");
  rows.SetFieldValue("Name", "mine");
  rows.Update();
  users.other.Execute("UPDATE Acc SET Name = 'other' WHERE Code = 2");
  users.other.Execute("DELETE FROM Acc WHERE Code = 3");
  EXPECT_EQ(ErrorOf([&] { rows.Resync(); }).Number(), kRowIsDeleted);
  rows.MoveNext();
  EXPECT_EQ(rows.FieldText(1), "other");
  EXPECT_EQ(Rows(users.other, "SELECT Name FROM Acc WHERE Code < 4 ORDER BY Code"), "mine;other");
  rows.MoveNext();
  EXPECT_EQ(ErrorOf([&] { rows.Delete(); }).Number(), kRowNotFound);

  // Without a key a row has to differ from all others; with a key that is not read none is found.
  Recordset bare;
  bare.Open("SELECT * FROM Bare ORDER BY N", users.own, CursorType::kKeyset, LockType::kOptimistic);
  bare.SetFieldValue("Name", "x");
  EXPECT_EQ(ErrorOf([&] { bare.Update(); }).Number(), kRowNotFound);
  bare.CancelUpdate();
  bare.MoveLast();
  bare.SetFieldValue("Name", "x");
  bare.Update();
  EXPECT_EQ(Rows(users.other, "SELECT Name FROM Bare ORDER BY N"), "a;a;x");
  bare.Close();
  bare.Open("SELECT Name FROM Acc", users.own, CursorType::kKeyset, LockType::kOptimistic);
  EXPECT_EQ(ErrorOf([&] { bare.Delete(); }).Number(), kKeyIsInsufficient);
  bare.Close();
  bare.Open("SELECT Code + 1 AS Next FROM Acc", users.own, CursorType::kKeyset,
            LockType::kOptimistic);
  bare.SetFieldValue(0, 1);
  EXPECT_GT(ErrorOf([&] { bare.Update(); }).Description().size(), 20U);
}

}  // namespace kel::testing
