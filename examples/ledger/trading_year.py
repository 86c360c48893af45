"""Makes up the vouchers of the year 1 April 2026 to 31 March 2027, in the order of their dates.

Nothing grows with the number of vouchers: the state is one balance for each account and one quantity for each item.
"""

import random
from collections import Counter, namedtuple
from datetime import date, timedelta
from decimal import Decimal

import trading_firm as firm
from rupees import to_paisa

FIRST_DAY = date(2026, 4, 1)
LAST_DAY = date(2027, 3, 31)

# How busy a month is; Navratri and Diwali fall into October and November, the tax year ends with March.
MONTH_WEIGHT = {4: 0.9, 5: 1.0, 6: 0.85, 7: 0.8, 8: 1.05, 9: 1.15, 10: 1.7, 11: 1.35, 12: 0.9, 1: 1.0, 2: 0.9, 3: 1.25}
HOLIDAYS = {date(2026, 8, 15), date(2026, 10, 2), date(2026, 11, 9), date(2026, 11, 10), date(2026, 11, 11),
            date(2027, 1, 14), date(2027, 1, 26)}
SUNDAY = 6

PREFIX = {"Sales": "SAL", "Purchase": "PUR", "Receipt": "RCT", "Payment": "PMT", "Journal": "JRN", "Contra": "CON"}
COST_SHARE = Decimal("0.78")  # of the selling rate
SMALLEST_BANK_BALANCE = Decimal(50000)

Line = namedtuple("Line", "account amount narration")  # amount: debit positive, credit negative
ItemLine = namedtuple("ItemLine", "item qty rate amount")
Voucher = namedtuple("Voucher", "number date type party lines items")


class TradingYear:
    def __init__(self, entries, seed):
        self._wanted_entries = entries
        self._random = random.Random(seed)
        self._parties = list(firm.parties())
        self._customers = [party for party in self._parties if party.code.startswith("C")]
        self._suppliers = [party for party in self._parties if party.code.startswith("S")]
        self._balance = {account.code: account.opening for account in firm.accounts()}
        self._on_hand = {item.code: 60 for item in firm.ITEMS}
        self._numbers = Counter()
        self._entries = 0

    def vouchers(self):
        days = [FIRST_DAY + timedelta(n) for n in range((LAST_DAY - FIRST_DAY).days + 1)]
        weight_of_year = sum(map(_weight, days))
        weight_so_far = 0
        for day in days:
            weight_so_far += _weight(day)
            yield from self._fixed_vouchers(day)
            while self._entries < self._wanted_entries * weight_so_far / weight_of_year:
                yield self._everyday_voucher(day)

    def _fixed_vouchers(self, day):
        """What happens on the same day every month or once a year."""
        is_month_end = (day + timedelta(1)).day == 1
        if day.day == 1:
            yield self._pay(day, firm.RENT, Decimal(48000), "For the month")
        if day.day == 8:
            yield self._pay(day, firm.ELECTRICITY, self._amount(9000, 16000), "Bill for last month")
        if day.day == 12:
            yield self._pay(day, firm.TELEPHONE, self._amount(1800, 2600), "Bill for last month")
        if day.day == 20:
            yield from self._settle_tax(day)
        if day.day == 25:
            yield self._pay(day, firm.DRAWINGS, Decimal(40000), "For household expenses")
        if (day.month, day.day) == (6, 15):
            yield self._pay(day, firm.INSURANCE, Decimal("28674.00"), "Shop and stock")
        if (day.month, day.day) == (11, 6):
            yield self._pay(day, firm.BONUS, Decimal(95000), "Paid to staff")
        if is_month_end:
            yield self._pay(day, firm.SALARIES, Decimal(142500), day.strftime("For %B"))
            yield self._pay(day, firm.BANK_CHARGES, self._amount(120, 480), "As per pass book")
            yield self._pay_loan(day)
        if day == LAST_DAY:
            yield self._depreciate(day)

    def _everyday_voucher(self, day):
        dice = self._random.random()
        if dice < 0.42:
            return self._sale(day)
        if dice < 0.56:
            return self._purchase(day)
        if dice < 0.78:
            return self._receipt(day)
        if dice < 0.91:
            return self._supplier_payment(day)
        if dice < 0.96:
            return self._petty_payment(day)
        return self._cash_to_or_from_bank(day) if dice < 0.985 else self._rate_difference(day)

    def _sale(self, day):
        items = []
        for item in self._random.sample(firm.ITEMS, self._random.randint(1, 7)):
            qty = min(self._random.randint(1, 24), self._on_hand[item.code])
            if qty:
                items.append(self._item_line(item, qty, item.rate))
        if not items:
            return self._purchase(day)
        for line in items:
            self._on_hand[line.item.code] -= line.qty
        party = self._random.choice(self._customers)
        goods = -sum(line.amount for line in items)
        lines = [Line(firm.SALES, goods, "")]
        lines += _tax_lines(party, items, -1, (firm.OUTPUT_CGST, firm.OUTPUT_SGST, firm.OUTPUT_IGST))
        return self._bill(day, "Sales", party, lines, items)

    def _purchase(self, day):
        """Orders what is lowest on the shelves, up to a fresh stock."""
        lowest = sorted(firm.ITEMS, key=lambda item: self._on_hand[item.code])[:self._random.randint(3, 6)]
        items = []
        for item in lowest:
            qty = max(12, 144 - self._on_hand[item.code])
            self._on_hand[item.code] += qty
            items.append(self._item_line(item, qty, item.rate * COST_SHARE))
        party = self._random.choice(self._suppliers)
        goods = sum(line.amount for line in items)
        lines = [Line(firm.PURCHASES, goods, "")]
        lines += _tax_lines(party, items, 1, (firm.INPUT_CGST, firm.INPUT_SGST, firm.INPUT_IGST))
        return self._bill(day, "Purchase", party, lines, items)

    def _receipt(self, day):
        owing = [party for party in self._customers if self._balance[party.account_code] >= 500]
        if not owing:
            return self._sale(day)
        party = self._random.choice(owing)
        due = self._balance[party.account_code]
        if self._random.random() < 0.75:
            due = _round_part(due, self._random)
        if due < 10000:
            money, how = firm.CASH, "Cash received"
        else:
            money, how = firm.BANK, self._bank_narration()
        discount = to_paisa(due * Decimal("0.01")) if self._random.random() < 0.1 else Decimal(0)
        lines = [Line(money, due - discount, "")]
        if discount:
            lines.append(Line(firm.DISCOUNT_ALLOWED, discount, "1% for prompt payment"))
        lines.append(Line(party.account_code, -due, how))
        return self._voucher(day, "Receipt", lines, party)

    def _supplier_payment(self, day):
        owed = [party for party in self._suppliers if self._balance[party.account_code] <= -500]
        funds = self._balance[firm.BANK] - SMALLEST_BANK_BALANCE
        if not owed or funds < 1000:
            return self._receipt(day)
        party = self._random.choice(owed)
        due = -self._balance[party.account_code]
        if due > funds:
            due = to_paisa(funds // 100 * 100)
        elif self._random.random() < 0.4:
            due = _round_part(due, self._random)
        how = self._bank_narration()
        discount = to_paisa(due * Decimal("0.005")) if self._random.random() < 0.1 else Decimal(0)
        lines = [Line(party.account_code, due, how), Line(firm.BANK, discount - due, "")]
        if discount:
            lines.append(Line(firm.DISCOUNT_RECEIVED, -discount, "0.5% for prompt payment"))
        return self._voucher(day, "Payment", lines, party)

    def _petty_payment(self, day):
        account, lowest, highest, why = self._random.choice((
            (firm.FREIGHT, 350, 2400, "Tempo and loading"), (firm.TEA, 60, 420, "Tea and snacks"),
            (firm.STATIONERY, 90, 950, "Bill books and printer ribbons")))
        amount = self._amount(lowest, highest)
        if self._balance[firm.CASH] < amount:
            return self._cash_to_or_from_bank(day)
        return self._voucher(day, "Payment", [Line(account, amount, why), Line(firm.CASH, -amount, "")])

    def _cash_to_or_from_bank(self, day):
        cash = self._balance[firm.CASH]
        if cash > 30000:
            amount = to_paisa((cash - 10000) // 1000 * 1000)
            return self._voucher(day, "Contra", [Line(firm.BANK, amount, "Deposited"),
                                                 Line(firm.CASH, -amount, "")])
        amount = Decimal("20000.00")
        return self._voucher(day, "Contra", [Line(firm.CASH, amount, "Withdrawn"),
                                             Line(firm.BANK, -amount, "")])

    def _rate_difference(self, day):
        party = self._random.choice(self._customers)
        amount = self._amount(50, 900)
        return self._voucher(day, "Journal", [Line(firm.DISCOUNT_ALLOWED, amount, ""),
                                              Line(party.account_code, -amount, "Rate difference")], party)

    def _pay(self, day, account, amount, why):
        return self._voucher(day, "Payment", [Line(account, amount, why), Line(firm.BANK, -amount, "")])

    def _pay_loan(self, day):
        interest = to_paisa(-self._balance[firm.LOAN] * Decimal("0.095") / 12)
        principal = Decimal("7500.00")
        return self._voucher(day, "Payment", [Line(firm.LOAN, principal, "Monthly instalment"),
                                              Line(firm.INTEREST, interest, "Interest at 9.5%"),
                                              Line(firm.BANK, -principal - interest, "")])

    def _settle_tax(self, day):
        """Sets input tax off against output tax, integrated tax first as the law has it, then pays what remains."""
        for input_tax, output_tax in ((firm.INPUT_IGST, firm.OUTPUT_IGST), (firm.INPUT_IGST, firm.OUTPUT_CGST),
                                      (firm.INPUT_IGST, firm.OUTPUT_SGST), (firm.INPUT_CGST, firm.OUTPUT_CGST),
                                      (firm.INPUT_SGST, firm.OUTPUT_SGST)):
            set_off = min(self._balance[input_tax], -self._balance[output_tax])
            if set_off > 0:
                yield self._voucher(day, "Journal", [Line(output_tax, set_off, "Set off"),
                                                     Line(input_tax, -set_off, "")])
        for output_tax in (firm.OUTPUT_IGST, firm.OUTPUT_CGST, firm.OUTPUT_SGST):
            due = -self._balance[output_tax]
            if due > 0:
                yield self._pay(day, output_tax, due, "Tax paid for the month")

    def _depreciate(self, day):
        furniture = to_paisa(self._balance[firm.FURNITURE] * Decimal("0.10"))
        vehicle = to_paisa(self._balance[firm.VEHICLE] * Decimal("0.15"))
        return self._voucher(day, "Journal", [Line(firm.DEPRECIATION, furniture + vehicle, "For the year"),
                                              Line(firm.FURNITURE, -furniture, "10%"),
                                              Line(firm.VEHICLE, -vehicle, "15%")])

    def _bill(self, day, kind, party, lines, items):
        """Adds the party's line, with the total rounded to whole rupees; debits stand before credits."""
        total = -sum(line.amount for line in lines)
        rounded = to_paisa(total.to_integral_value())
        if rounded != total:
            lines.append(Line(firm.ROUND_OFF, total - rounded, ""))
        party_line = Line(party.account_code, rounded, f"{kind} of {len(items)} item(s)")
        lines.insert(0 if rounded > 0 else len(lines), party_line)
        return self._voucher(day, kind, lines, party, items)

    def _voucher(self, day, kind, lines, party=None, items=()):
        assert sum(line.amount for line in lines) == 0
        for line in lines:
            self._balance[line.account] += line.amount
        self._entries += len(lines)
        self._numbers[kind] += 1
        return Voucher(f"{PREFIX[kind]}-{self._numbers[kind]:05}", day, kind, party, lines, items)

    def _item_line(self, item, qty, rate):
        rate = to_paisa(rate * (100 + self._random.randint(-4, 4)) / 100)
        return ItemLine(item, qty, rate, rate * qty)

    def _amount(self, lowest, highest):
        return Decimal(self._random.randint(lowest * 100, highest * 100)) / 100

    def _bank_narration(self):
        number = self._random.randint(100000, 999999)
        return self._random.choice(("Cheque", "NEFT", "UPI")) + f" {number}"


def _tax_lines(party, items, sign, accounts):
    """Central and state tax in halves for a party of our own state, integrated tax for any other."""
    central, state, integrated = accounts
    lines = []
    for percent in sorted({line.item.tax for line in items}):
        goods = sum(line.amount for line in items if line.item.tax == percent)
        if firm.STATE_OF_CITY[party.city] == firm.FIRM_STATE:
            half = to_paisa(goods * percent / 200) * sign
            lines.append(Line(central, half, f"{percent / 2}%"))
            lines.append(Line(state, half, f"{percent / 2}%"))
        else:
            lines.append(Line(integrated, to_paisa(goods * percent / 100) * sign, f"{percent}%"))
    return lines


def _round_part(due, rng):
    part = to_paisa(due * rng.randint(25, 75) / 10000 // 1 * 100)
    return part if part > 0 else due


def _weight(day):
    return 0 if day.weekday() == SUNDAY or day in HOLIDAYS else MONTH_WEIGHT[day.month]
