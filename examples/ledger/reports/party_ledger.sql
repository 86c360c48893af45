SELECT strftime('%d-%m-%Y', Date) AS "Date",
       Number AS "Voucher",
       Particulars AS "Particulars",
       DebitText AS "Debit",
       CreditText AS "Credit",
       BalanceText AS "Balance"
FROM (SELECT PartyCode, Date, EntryId, Number, Narration AS Particulars, DebitText, CreditText, BalanceText
      FROM PartyLedger
      UNION ALL
      SELECT PartyCode, NULL, NULL, '', 'Total', DebitText, CreditText, ''
      FROM PartyTotal) AS ledger
WHERE ledger.PartyCode = 'C002'
ORDER BY ledger.EntryId IS NULL, ledger.Date, ledger.EntryId
