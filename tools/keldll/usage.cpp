#include "keldll/usage.h"

namespace kel::command {
namespace {

constexpr std::string_view kGeneralUsage = R"(usage: keldll report SOURCE [layout] [output]
       keldll browse SOURCE [columns]
       keldll words AMOUNT...
       keldll setup
       keldll settings [get KEY | set KEY VALUE | reset]
       keldll --version | --help | help VERB

  report     lay a table out into pages, then print, show or save them
  browse     open the list window on a table: scroll, sort, filter, find, edit, total, print
  words      write amounts in words
  setup      open the printer setup dialog
  settings   show and change the stored settings

keldll help VERB tells the options of a verb.
)";

constexpr std::string_view kReportUsage = R"(usage: keldll report SOURCE [layout] [output]

SOURCE, one of
  grid.json                a grid with widths, alignments, fonts and titles
  table.csv                comma-separated values; the first record is the headings
  --db DB --sql TEXT       the rows of a statement; DB: an SQLite file,
                           postgresql://user@host:port/name or
                           odbc:CONNECTION STRING

Layout
  --caption TEXT           the caption of the page line
  --title TEXT             a line above the first page; repeat for more
  --widths 10,20,0,12      characters per column; 0 hides a column
  --align l,r,...          left or right, per column
  --rows A-B               only these rows; row 0 holds the headings
  --cols A-B               only these columns, counted from 0
  --start-page N           number of the first page
  --set NAME=VALUE         a print setting for this job only; repeat for more
  --stamp TEXT             the text printed as date and time
  --pages A-B              only these pages, counted from 1

Output
  -o FILE                  by its ending; repeat for more: .rpt the page file, .txt its text without
                           codes, .pdf one sheet for each page, .doc a document for word processors,
                           .xlsx a workbook with a cell for each column, .xls the same for older
                           programs (needs LibreOffice)
  -o -                     the text on standard output (when nothing else is asked for)
  --print                  print the pages: in text mode through the port, in Windows mode through
                           the system's printer; ends when the last byte is on its way
  --preview                show the pages in the preview window until it is closed
)";

constexpr std::string_view kBrowseUsage =
    R"(usage: keldll browse SOURCE [--caption TEXT] [--active 0,3] [--sums 2,4]
                     [--formats "0=dd/mmmm/yyyy,4=###0.00"] [--align l,r,...]

Opens the list window on a table, until it is closed. Columns are counted from 0.

SOURCE, one of
  grid.json                a grid; its first row holds the column names
  table.csv                comma-separated values; the first record holds the column names
  --db DB --sql TEXT       the rows of a statement; DB: an SQLite file,
                           postgresql://user@host:port/name or
                           odbc:CONNECTION STRING

  --caption TEXT           the title of the window
  --active 0,3             columns that may be edited; only with --db
  --sums 2,4               columns that the printed list totals
  --formats "0=FORMAT,..." how columns show their values; a comma that a column
                           and = do not follow belongs to the format
  --align l,r,...          left, right, centre or general, per column
)";

constexpr std::string_view kWordsUsage =
    R"text(usage: keldll words AMOUNT... [--rupee TEXT] [--paise TEXT] [--extended]

One line of words per amount.
  --rupee TEXT   the word after the whole units, "Rupee(s)" unless given
  --paise TEXT   the word after the hundredths, "Paise" unless given
  --extended     read amounts as exact decimal texts; right up to 60 digits
  --             ends the options, for negative amounts: keldll words -- -5
)text";

constexpr std::string_view kSetupUsage = R"(usage: keldll setup

Opens the printer setup dialog: print mode, printer and port, character set or font, page and
margins. What is saved there holds for later reports.
)";

constexpr std::string_view kSettingsUsage = R"(usage: keldll settings
       keldll settings get KEY
       keldll settings set KEY VALUE
       keldll settings reset

Without more, lists every setting. KEY is Section/Key: 'Setup\DOS/Lines', 'Characters/12 cpi'.
reset deletes everything that is stored.
)";

}  // namespace

std::string_view UsageOf(std::string_view verb) {
  if (verb.empty()) return kGeneralUsage;
  if (verb == "report") return kReportUsage;
  if (verb == "browse") return kBrowseUsage;
  if (verb == "words") return kWordsUsage;
  if (verb == "setup") return kSetupUsage;
  if (verb == "settings") return kSettingsUsage;
  return {};
}

}  // namespace kel::command
