SELECT CASE Line WHEN 1 THEN strftime('%d-%m-%Y', Date) ELSE '' END AS "Date",
       CASE Line WHEN 1 THEN Number ELSE '' END AS "Voucher",
       Particulars AS "Particulars",
       DebitText AS "Debit",
       CreditText AS "Credit"
FROM (SELECT Date, VoucherId, Line, Number,
             CASE WHEN Credit > 0 THEN '  To ' ELSE '' END || AccountName
               || CASE WHEN Narration = '' THEN '' ELSE ' (' || Narration || ')' END AS Particulars,
             DebitText, CreditText
      FROM DayBook
      UNION ALL
      SELECT '9999-12-31', 0, 0, '', 'Total of the year', DebitText, CreditText
      FROM DayBookTotal) AS book
ORDER BY book.Date, book.VoucherId, book.Line
