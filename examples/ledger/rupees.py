"""Amounts of money: exact to the paisa, written with the Indian grouping of digits."""

from decimal import ROUND_HALF_UP, Decimal

PAISA = Decimal("0.01")
RUPEE_SIGN = "\u20b9"


def to_paisa(amount):
    return amount.quantize(PAISA, rounding=ROUND_HALF_UP)


def from_books(amount):
    """The exact amount behind a DOUBLE column: its shortest decimal text is what was stored."""
    return to_paisa(Decimal(repr(float(amount))))


def grouped(amount):
    """1234567.5 as 12,34,567.50: three digits before the point, then groups of two."""
    whole, paise = f"{abs(amount):.2f}".split(".")
    head, tail = whole[:-3], whole[-3:]
    groups = [tail]
    while head:
        groups.insert(0, head[-2:])
        head = head[:-2]
    return ("-" if amount < 0 else "") + ",".join(groups) + "." + paise
