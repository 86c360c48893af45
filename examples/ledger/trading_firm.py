"""The firm whose books are kept: its accounts, customers, suppliers and goods. Every name and number is made up."""

from collections import namedtuple
from decimal import Decimal

FIRM_NAME = "Kesar Trading Company"
FIRM_ADDRESS = "14 Manek Chowk, Ahmedabad 380001, Gujarat"
FIRM_STATE = 24
FIRM_GSTIN = "24ZZZZZ0001Z1Z1"

Group = namedtuple("Group", "code name")
Account = namedtuple("Account", "code name group opening")  # opening: debit positive, credit negative
Party = namedtuple("Party", "code name address1 address2 city pin account_code")
Item = namedtuple("Item", "code name hsn unit rate tax")  # rate: rupees without tax; tax: percent

# A group's parent is the group whose code is one digit shorter.
GROUPS = [
    Group("1", "Assets"),
    Group("11", "Fixed Assets"),
    Group("12", "Current Assets"),
    Group("121", "Cash and Bank"),
    Group("122", "Sundry Debtors"),
    Group("123", "Stock in Hand"),
    Group("124", "Input Tax"),
    Group("2", "Liabilities"),
    Group("21", "Capital"),
    Group("22", "Loans"),
    Group("23", "Current Liabilities"),
    Group("231", "Sundry Creditors"),
    Group("232", "Output Tax"),
    Group("3", "Income"),
    Group("31", "Sales"),
    Group("32", "Other Income"),
    Group("4", "Expenses"),
    Group("41", "Purchases"),
    Group("42", "Direct Expenses"),
    Group("43", "Indirect Expenses"),
]

FURNITURE, VEHICLE = "1101", "1102"
CASH, BANK = "1201", "1202"
STOCK = "1251"
INPUT_CGST, INPUT_SGST, INPUT_IGST = "1261", "1262", "1263"
CAPITAL, DRAWINGS = "2101", "2102"
LOAN = "2201"
OUTPUT_CGST, OUTPUT_SGST, OUTPUT_IGST = "2351", "2352", "2353"
SALES, DISCOUNT_RECEIVED = "3101", "3201"
PURCHASES, FREIGHT = "4101", "4201"
RENT, SALARIES, ELECTRICITY, TELEPHONE = "4301", "4302", "4303", "4304"
STATIONERY, TEA, BANK_CHARGES, INTEREST = "4305", "4306", "4307", "4308"
DISCOUNT_ALLOWED, DEPRECIATION, INSURANCE, ROUND_OFF = "4309", "4310", "4311", "4312"
BONUS = "4313"

GENERAL_ACCOUNTS = [
    Account(FURNITURE, "Furniture and shop fittings", "11", Decimal(385000)),
    Account(VEHICLE, "Delivery van", "11", Decimal(520000)),
    Account(CASH, "Cash in hand", "121", Decimal("46250.00")),
    Account(BANK, "Current account with the bank", "121", Decimal("1528430.75")),
    Account(STOCK, "Stock of goods, 1 April 2026", "123", Decimal(1865000)),
    Account(INPUT_CGST, "Input CGST", "124", Decimal(0)),
    Account(INPUT_SGST, "Input SGST", "124", Decimal(0)),
    Account(INPUT_IGST, "Input IGST", "124", Decimal(0)),
    Account(DRAWINGS, "Drawings", "21", Decimal(0)),
    Account(LOAN, "Term loan for the van", "22", Decimal("-360000.00")),
    Account(OUTPUT_CGST, "Output CGST", "232", Decimal(0)),
    Account(OUTPUT_SGST, "Output SGST", "232", Decimal(0)),
    Account(OUTPUT_IGST, "Output IGST", "232", Decimal(0)),
    Account(SALES, "Sales", "31", Decimal(0)),
    Account(DISCOUNT_RECEIVED, "Discount received", "32", Decimal(0)),
    Account(PURCHASES, "Purchases", "41", Decimal(0)),
    Account(FREIGHT, "Freight and cartage", "42", Decimal(0)),
    Account(RENT, "Shop and godown rent", "43", Decimal(0)),
    Account(SALARIES, "Salaries", "43", Decimal(0)),
    Account(ELECTRICITY, "Electricity", "43", Decimal(0)),
    Account(TELEPHONE, "Telephone and internet", "43", Decimal(0)),
    Account(STATIONERY, "Printing and stationery", "43", Decimal(0)),
    Account(TEA, "Tea and staff welfare", "43", Decimal(0)),
    Account(BANK_CHARGES, "Bank charges", "43", Decimal(0)),
    Account(INTEREST, "Interest on loan", "43", Decimal(0)),
    Account(DISCOUNT_ALLOWED, "Discount allowed", "43", Decimal(0)),
    Account(DEPRECIATION, "Depreciation", "43", Decimal(0)),
    Account(INSURANCE, "Insurance", "43", Decimal(0)),
    Account(ROUND_OFF, "Round off", "43", Decimal(0)),
    Account(BONUS, "Diwali bonus", "43", Decimal(0)),
]

STATES = {7: "Delhi", 8: "Rajasthan", 9: "Uttar Pradesh", 19: "West Bengal", 23: "Madhya Pradesh", 24: "Gujarat",
          27: "Maharashtra", 29: "Karnataka", 33: "Tamil Nadu"}
STATE_OF_CITY = {
    "Ahmedabad": 24, "Surat": 24, "Vadodara": 24, "Rajkot": 24, "Bhavnagar": 24, "Jamnagar": 24, "Anand": 24,
    "अहमदाबाद": 24, "અમદાવાદ": 24, "સુરત": 24, "રાજકોટ": 24, "ભાવનગર": 24,
    "Mumbai": 27, "Pune": 27, "Nagpur": 27, "मुंबई": 27, "Jaipur": 8, "Udaipur": 8, "जोधपुर": 8, "Indore": 23,
    "भोपाल": 23, "Delhi": 7, "दिल्ली": 7, "Lucknow": 9, "वाराणसी": 9, "Kolkata": 19, "Bengaluru": 29, "Chennai": 33,
}

CUSTOMERS = [
    ("Aarav Home Stores", "12 Relief Road", "", "Ahmedabad", "380001"),
    ("શ્રી ગણેશ વાસણ ભંડાર", "૭, માણેક ચોક", "સાંકડી શેરી", "અમદાવાદ", "380001"),
    ("शर्मा बर्तन भण्डार", "२१, चौड़ा रास्ता", "त्रिपोलिया बाज़ार के पास", "जोधपुर", "342001"),
    ("Maharashtra Household Appliances and Kitchenware Distribution Co-operative Society Limited",
     "Unit 9, Laxmi Industrial Estate", "Off Link Road, Andheri West", "Mumbai", "400053"),
    ("Bhavna Electricals", "4 Station Road", "", "Anand", "388001"),
    ("Chirag Lighting House", "88 Ring Road", "Near Textile Market", "Surat", "395002"),
    ("Deepak Crockery Mart", "3 Kalupur Gate", "", "Ahmedabad", "380002"),
    ("જય અંબે સ્ટોર્સ", "૧૨, ઝાંપા બજાર", "", "સુરત", "395003"),
    ("Everest Kitchen World", "17 Alkapuri Society", "", "Vadodara", "390007"),
    ("Farida Gift Gallery", "5 Bhadra Fort Lane", "", "Ahmedabad", "380001"),
    ("गुप्ता एण्ड सन्स", "४५, चाँदनी चौक", "कटरा नील", "दिल्ली", "110006"),
    ("Girnar Traders", "22 Dhebar Road", "", "Rajkot", "360001"),
    ("Harsh Provision and General Stores", "Plot 6, Sector 21", "", "Ahmedabad", "382021"),
    ("Indira Home Needs", "9 M G Road", "", "Indore", "452001"),
    ("Jyoti Steel Centre", "31 Kansara Bazar", "", "Jamnagar", "361001"),
    ("Khodiyar Utensils", "2 Vora Bazar", "", "Bhavnagar", "364001"),
    ("કૃષ્ણા હોમ એપ્લાયન્સીસ અને ઇલેક્ટ્રિકલ સ્ટોર્સ", "૩, યાજ્ઞિક રોડ", "", "રાજકોટ", "360001"),
    ("Laxmi Stores", "60 Tilak Road", "", "Pune", "411002"),
    ("Mahavir Metal Mart", "14 Johari Bazar", "", "Jaipur", "302003"),
    ("Navrang Plastics", "Shop 8, Sardar Market", "", "Surat", "395010"),
    ("Om Enterprises", "101 Ashram Road", "", "Ahmedabad", "380009"),
    ("Patel Brothers", "7 Raopura Main Road", "", "Vadodara", "390001"),
    ("Quality Electric Company", "19 Lohar Chawl", "", "Mumbai", "400002"),
    ("Radhe Kitchen Studio", "C-4 Iscon Plaza", "Satellite Road", "Ahmedabad", "380015"),
    ("Sagar Distributors", "Warehouse 3, Narol Cross Roads", "", "Ahmedabad", "382405"),
    ("श्री विश्वनाथ ट्रेडर्स", "११, दशाश्वमेध रोड", "", "वाराणसी", "221001"),
    ("Tulsi General Stores", "42 Paldi Gam", "", "Ahmedabad", "380007"),
    ("Udaipur Bartan Bhandar", "16 Bada Bazar", "", "Udaipur", "313001"),
    ("Vishal Sales Agency", "28 Hazratganj", "", "Lucknow", "226001"),
    ("Zaveri & Daughters \u20b999 Bazaar", "1 Gandhi Road", "", "Ahmedabad", "380001"),
]

SUPPLIERS = [
    ("Bharat Utensil Works Private Limited", "Plot 114, G I D C Estate, Vatva", "", "Ahmedabad", "382445"),
    ("Sunrise Lamps and Luminaires Manufacturing Company (Western Region Depot)", "Shed 7, M I D C, Chakan", "",
     "Pune", "410501"),
    ("Nandini Appliances", "Survey 31, Aji Vasahat", "", "Rajkot", "360003"),
    ("मध्य भारत प्लास्टिक उद्योग", "१८, गोविन्दपुरा", "औद्योगिक क्षेत्र", "भोपाल", "462023"),
    ("Coromandel Cookware", "77 Mount Road", "", "Chennai", "600002"),
    ("Hooghly Enamel Company", "5 Strand Road", "", "Kolkata", "700001"),
    ("Kaveri Fans and Motors", "48 Peenya Second Stage", "", "Bengaluru", "560058"),
    ("ભાવનગર સ્ટીલ ઉદ્યોગ", "૨૫, ચિત્રા જી.આઈ.ડી.સી.", "", "ભાવનગર", "364004"),
    ("Vidarbha Glass House", "11 Sitabuldi Main Road", "", "Nagpur", "440012"),
    ("Yamuna Electricals", "2140 Bhagirath Palace", "", "Delhi", "110006"),
]

ITEMS = [
    Item("U01", "Steel dinner plate, 12 inch", "7323", "Pcs", Decimal("145.00"), Decimal(5)),
    Item("U02", "Steel tumbler, set of 6", "7323", "Set", Decimal("238.50"), Decimal(5)),
    Item("U03", "Steel storage drum, 25 kg", "7323", "Pcs", Decimal("1120.00"), Decimal(5)),
    Item("U04", "Copper water pot, 5 litre, hammered, with lid and tap", "7418", "Pcs", Decimal("1865.00"), Decimal(5)),
    Item("U05", "Brass puja thali", "7418", "Pcs", Decimal("640.75"), Decimal(5)),
    Item("U06", "Aluminium pressure cooker, 5 litre", "7615", "Pcs", Decimal("1249.00"), Decimal(5)),
    Item("U07", "Non-stick tawa, 280 mm", "7615", "Pcs", Decimal("585.00"), Decimal(5)),
    Item("U08", "Idli stand, 4 plates", "7615", "Pcs", Decimal("312.25"), Decimal(5)),
    Item("E01", "LED bulb, 9 W", "8539", "Pcs", Decimal("82.40"), Decimal(18)),
    Item("E02", "LED batten, 20 W", "9405", "Pcs", Decimal("214.00"), Decimal(18)),
    Item("E03", "Ceiling fan, 1200 mm", "8414", "Pcs", Decimal("1745.00"), Decimal(18)),
    Item("E04", "Mixer grinder, 750 W, three jars", "8509", "Pcs", Decimal("3120.00"), Decimal(18)),
    Item("E05", "Electric kettle, 1.5 litre", "8516", "Pcs", Decimal("795.50"), Decimal(18)),
    Item("E06", "Steam iron, 1400 W", "8516", "Pcs", Decimal("1180.00"), Decimal(18)),
    Item("E07", "Diwali string lights, 10 m", "9405", "Roll", Decimal("129.90"), Decimal(18)),
    Item("E08", "Extension board, 6 sockets", "8536", "Pcs", Decimal("465.00"), Decimal(18)),
    Item("P01", "Plastic bucket, 20 litre", "3924", "Pcs", Decimal("178.00"), Decimal(18)),
    Item("P02", "Lunch box, insulated", "3924", "Pcs", Decimal("349.00"), Decimal(18)),
    Item("G01", "Glass jar set of 4", "7013", "Set", Decimal("410.00"), Decimal(18)),
    Item("G02", "Bone china cup and saucer, set of 12", "6911", "Set", Decimal("986.00"), Decimal(5)),
]


def parties():
    """Customers C001... with accounts 1301..., suppliers S001... with accounts 2301...; account codes stay unique."""
    for n, row in enumerate(CUSTOMERS, 1):
        yield Party(f"C{n:03}", *row, account_code=str(1300 + n))
    for n, row in enumerate(SUPPLIERS, 1):
        yield Party(f"S{n:03}", *row, account_code=str(2300 + n))


def accounts():
    """All accounts in the order of their codes; the capital makes the opening balances agree."""
    all_accounts = GENERAL_ACCOUNTS + [_party_account(party, n) for n, party in enumerate(parties())]
    capital = -sum(account.opening for account in all_accounts)
    all_accounts.append(Account(CAPITAL, "Capital of Kesar Shah, proprietor", "21", capital))
    return sorted(all_accounts, key=lambda account: account.code)


def gstin(party, n):
    """Formed as a GSTIN is; the five Z show that it is nobody's."""
    return f"{STATE_OF_CITY[party.city]:02}ZZZZZ{n:04}Z1Z{n % 10}"


def _party_account(party, n):
    opening = Decimal(n * 7919 % 83) * Decimal("1137.25")
    if party.code.startswith("S"):
        return Account(party.account_code, party.name, "231", -opening)
    return Account(party.account_code, party.name, "122", opening)
