"""Tables, indexes and views of the books."""

from trading_year import FIRST_DAY


def _paise(rupees):
    """Whole paise of a DOUBLE: sums of them are exact however many rows there are."""
    return f"CAST(ROUND(({rupees}) * 100) AS INTEGER)"


def _sum(rupees):
    return f"SUM({_paise(rupees)}) / 100.0"


def _grouped(rupees):
    """Text of an amount that is not negative, below 1,00,000 crore, grouped the Indian way; nothing for zero."""
    padded = f"printf('%15.2f', {rupees})"
    pieces = " || ',' || ".join(f"substr({padded}, {start}, {length})"
                                for start, length in ((1, 3), (4, 2), (6, 2), (8, 2), (10, 6)))
    return f"CASE WHEN {rupees} = 0 THEN '' ELSE ltrim({pieces}, ' ,') END"


TABLES = """
CREATE TABLE AccountGroup (
  GroupId INTEGER PRIMARY KEY,
  Code TEXT NOT NULL UNIQUE,
  Name TEXT NOT NULL,
  ParentId INTEGER REFERENCES AccountGroup);

CREATE TABLE Account (
  AccountId INTEGER PRIMARY KEY,
  Code TEXT NOT NULL UNIQUE,
  Name TEXT NOT NULL,
  GroupId INTEGER NOT NULL REFERENCES AccountGroup,
  Opening DOUBLE NOT NULL DEFAULT 0);  -- debit positive, credit negative

CREATE TABLE Party (
  PartyId INTEGER PRIMARY KEY,
  Code TEXT NOT NULL UNIQUE,
  Name TEXT NOT NULL,
  Address1 TEXT NOT NULL,
  Address2 TEXT NOT NULL DEFAULT '',
  City TEXT NOT NULL,
  Pin TEXT NOT NULL,
  State TEXT NOT NULL,
  Gstin TEXT NOT NULL,
  AccountId INTEGER NOT NULL UNIQUE REFERENCES Account);

CREATE TABLE StockItem (
  ItemId INTEGER PRIMARY KEY,
  Code TEXT NOT NULL UNIQUE,
  Name TEXT NOT NULL,
  Hsn TEXT NOT NULL,
  Unit TEXT NOT NULL,
  Rate DOUBLE NOT NULL,
  TaxRate DOUBLE NOT NULL);

CREATE TABLE Voucher (
  VoucherId INTEGER PRIMARY KEY,
  Number TEXT NOT NULL,
  Date DATE NOT NULL,
  Type TEXT NOT NULL CHECK (Type IN ('Sales', 'Purchase', 'Receipt', 'Payment', 'Journal', 'Contra')),
  PartyId INTEGER REFERENCES Party);

CREATE TABLE Entry (
  EntryId INTEGER PRIMARY KEY,
  VoucherId INTEGER NOT NULL REFERENCES Voucher,
  Line INTEGER NOT NULL,
  AccountId INTEGER NOT NULL REFERENCES Account,
  Debit DOUBLE NOT NULL DEFAULT 0 CHECK (Debit >= 0),
  Credit DOUBLE NOT NULL DEFAULT 0 CHECK (Credit >= 0),
  Narration TEXT NOT NULL DEFAULT '');

CREATE TABLE VoucherItem (
  VoucherItemId INTEGER PRIMARY KEY,
  VoucherId INTEGER NOT NULL REFERENCES Voucher,
  Line INTEGER NOT NULL,
  ItemId INTEGER NOT NULL REFERENCES StockItem,
  Qty DOUBLE NOT NULL,
  Rate DOUBLE NOT NULL,
  Amount DOUBLE NOT NULL);
"""

# Made after loading: building an index once is faster than keeping it up to date row by row.
INDEXES = """
CREATE INDEX AccountByGroup ON Account (GroupId);
CREATE UNIQUE INDEX VoucherByNumber ON Voucher (Number);
CREATE INDEX VoucherByDate ON Voucher (Date);
CREATE INDEX VoucherByParty ON Voucher (PartyId);
CREATE UNIQUE INDEX EntryByVoucher ON Entry (VoucherId, Line);
CREATE INDEX EntryByAccount ON Entry (AccountId);
CREATE UNIQUE INDEX VoucherItemByVoucher ON VoucherItem (VoucherId, Line);
CREATE INDEX VoucherItemByItem ON VoucherItem (ItemId);
"""

# Amounts are numbers; the ...Text columns beside them are for printing.
VIEWS = f"""
CREATE VIEW TrialBalance AS
SELECT GroupCode, GroupName, AccountCode, AccountName, Opening, Debit, Credit,
       MAX(Closing, 0.0) AS ClosingDebit, MAX(-Closing, 0.0) AS ClosingCredit
FROM (SELECT g.Code AS GroupCode, g.Name AS GroupName, a.Code AS AccountCode, a.Name AS AccountName, a.Opening,
             COALESCE(e.Debit, 0.0) AS Debit, COALESCE(e.Credit, 0.0) AS Credit,
             ({_paise("a.Opening")} + COALESCE({_paise("e.Debit")} - {_paise("e.Credit")}, 0)) / 100.0 AS Closing
      FROM Account a
      JOIN AccountGroup g ON g.GroupId = a.GroupId
      LEFT JOIN (SELECT AccountId, {_sum("Debit")} AS Debit, {_sum("Credit")} AS Credit
                 FROM Entry GROUP BY AccountId) e ON e.AccountId = a.AccountId)
ORDER BY GroupCode, AccountCode;

CREATE VIEW DayBook AS
SELECT v.Date, v.VoucherId, v.Number, v.Type, e.Line, a.Code AS AccountCode, a.Name AS AccountName, e.Narration,
       e.Debit, e.Credit, {_grouped("e.Debit")} AS DebitText, {_grouped("e.Credit")} AS CreditText
FROM Voucher v
JOIN Entry e ON e.VoucherId = v.VoucherId
JOIN Account a ON a.AccountId = e.AccountId
ORDER BY v.Date, v.VoucherId, e.Line;

CREATE VIEW DayBookTotal AS
SELECT {_sum("Debit")} AS Debit, {_sum("Credit")} AS Credit,
       {_grouped(_sum("Debit"))} AS DebitText, {_grouped(_sum("Credit"))} AS CreditText
FROM Entry;

CREATE VIEW PartyEntry AS
SELECT p.PartyId, 0 AS EntryId, '{FIRST_DAY.isoformat()}' AS Date, '' AS Number, '' AS Type,
       'Opening balance' AS Narration, MAX(a.Opening, 0.0) AS Debit, MAX(-a.Opening, 0.0) AS Credit
FROM Party p
JOIN Account a ON a.AccountId = p.AccountId
UNION ALL
SELECT p.PartyId, e.EntryId, v.Date, v.Number, v.Type, e.Narration, e.Debit, e.Credit
FROM Party p
JOIN Entry e ON e.AccountId = p.AccountId
JOIN Voucher v ON v.VoucherId = e.VoucherId;

CREATE VIEW PartyLedger AS
SELECT p.Code AS PartyCode, p.Name AS PartyName, l.EntryId, l.Date, l.Number, l.Type, l.Narration,
       l.Debit, l.Credit, l.Balance,
       {_grouped("l.Debit")} AS DebitText, {_grouped("l.Credit")} AS CreditText,
       CASE WHEN l.Balance = 0 THEN 'Nil'
            ELSE {_grouped("ABS(l.Balance)")} || CASE WHEN l.Balance > 0 THEN ' Dr' ELSE ' Cr' END
       END AS BalanceText
FROM (SELECT PartyId, EntryId, Date, Number, Type, Narration, Debit, Credit,
             SUM({_paise("Debit - Credit")}) OVER (PARTITION BY PartyId ORDER BY Date, EntryId) / 100.0 AS Balance
      FROM PartyEntry) l
JOIN Party p ON p.PartyId = l.PartyId
ORDER BY p.Code, l.Date, l.EntryId;

CREATE VIEW PartyTotal AS
SELECT p.Code AS PartyCode, {_sum("e.Debit")} AS Debit, {_sum("e.Credit")} AS Credit,
       {_grouped(_sum("e.Debit"))} AS DebitText, {_grouped(_sum("e.Credit"))} AS CreditText
FROM PartyEntry e
JOIN Party p ON p.PartyId = e.PartyId
GROUP BY e.PartyId;

CREATE VIEW InvoiceLines AS
SELECT v.Number, v.Date, v.Type, p.Code AS PartyCode, p.Name AS PartyName, i.Line, s.Code AS ItemCode,
       s.Name AS ItemName, s.Hsn, s.Unit, i.Qty, i.Rate, s.TaxRate, i.Amount
FROM VoucherItem i
JOIN Voucher v ON v.VoucherId = i.VoucherId
JOIN StockItem s ON s.ItemId = i.ItemId
JOIN Party p ON p.PartyId = v.PartyId
ORDER BY v.Number, i.Line;
"""
