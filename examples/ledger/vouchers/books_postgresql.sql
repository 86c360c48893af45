-- The tables of the books in a PostgreSQL database, with a few accounts to begin with:
--     psql -f books_postgresql.sql postgresql://user@host/name

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
  Opening NUMERIC(14,2) NOT NULL DEFAULT 0);  -- debit positive, credit negative

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
  Rate NUMERIC(14,2) NOT NULL,
  TaxRate NUMERIC(5,2) NOT NULL);

CREATE TABLE Voucher (
  VoucherId INTEGER PRIMARY KEY,
  Number TEXT NOT NULL UNIQUE,
  Date DATE NOT NULL,
  Type TEXT NOT NULL CHECK (Type IN ('Sales', 'Purchase', 'Receipt', 'Payment', 'Journal', 'Contra')),
  PartyId INTEGER REFERENCES Party);

CREATE TABLE Entry (
  EntryId INTEGER PRIMARY KEY,
  VoucherId INTEGER NOT NULL REFERENCES Voucher,
  Line INTEGER NOT NULL,
  AccountId INTEGER NOT NULL REFERENCES Account,
  Debit NUMERIC(14,2) NOT NULL DEFAULT 0 CHECK (Debit >= 0),
  Credit NUMERIC(14,2) NOT NULL DEFAULT 0 CHECK (Credit >= 0),
  Narration TEXT NOT NULL DEFAULT '',
  UNIQUE (VoucherId, Line));

CREATE TABLE VoucherItem (
  VoucherItemId INTEGER PRIMARY KEY,
  VoucherId INTEGER NOT NULL REFERENCES Voucher,
  Line INTEGER NOT NULL,
  ItemId INTEGER NOT NULL REFERENCES StockItem,
  Qty NUMERIC(14,3) NOT NULL,
  Rate NUMERIC(14,2) NOT NULL,
  Amount NUMERIC(14,2) NOT NULL,
  UNIQUE (VoucherId, Line));

INSERT INTO AccountGroup (GroupId, Code, Name) VALUES (1, 'A', 'Assets'), (2, 'X', 'Expenses');
INSERT INTO Account (AccountId, Code, Name, GroupId) VALUES
  (1, 'A01', 'Cash in hand', 1),
  (2, 'A02', 'Bank', 1),
  (3, 'X01', 'Office rent', 2),
  (4, 'X02', 'Electricity', 2);
