// The SOURCE of a command line.
#pragma once

#include <string>

#include "data/Connection.h"
#include "keldll/arguments.h"

namespace kel::command {

enum class SourceKind { kGridFile, kCsvFile, kDatabaseFile, kServer };

struct SourceOptions {
  bool IsFile() const { return kind == SourceKind::kGridFile || kind == SourceKind::kCsvFile; }

  SourceKind kind = SourceKind::kGridFile;
  std::string name;    // the path of a file or an SQLite database; of a server what messages show
  std::string server;  // its whole address, with the password
  std::string sql;     // empty for a file
};

/// The options that belong to a source.
inline constexpr OptionSpec kDbOption{"--db", OptionKind::kValue};
inline constexpr OptionSpec kSqlOption{"--sql", OptionKind::kValue};

/// The source that a command line names, by its only word without an option or by --db and --sql.
/// Throws UsageError when it is missing, one too many, or of no kind that there is.
SourceOptions ReadSource(const Arguments& arguments);

/// What a table is called that is given no caption: the name of the file, or the statement's first
/// table.
std::string CaptionOf(const SourceOptions& source);

/// Opens the database of a source that is no file. Throws Error naming it.
Connection OpenDatabase(const SourceOptions& source, Access access);

}  // namespace kel::command
