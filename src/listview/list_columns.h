// The columns of the list window's grid.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/format_pattern.h"
#include "common/twips.h"
#include "common/value.h"
#include "data/Recordset.h"
#include "listview/list_settings.h"

namespace kel {

/// The grid's alignment codes. General is right for numbers and left for all else.
enum GridAlignment : int { gridLeft = 0, gridRight = 1, gridCenter = 2, gridGeneral = 3 };

/// How a grid shows one field.
struct ListColumn {
  std::string caption;  // the field's name, with "*" behind it when the column may be edited
  FieldType type = FieldType::kText;
  bool locked = true;
  int alignment = gridGeneral;
  FormatPattern format;
  bool visible = true;
  Twips width = 0;  // on the screen; kept by the window

  /// Where texts stand once general is resolved.
  GridAlignment Side() const;
};

/// The columns that a grid makes of a recordset's fields when it is bound to it.
std::vector<ListColumn> MakeColumns(const Recordset& records);

/// Prepares the columns as ShowListView does: alignments from `column_alignment` (by column; all
/// general when it is no array; where it has no element the column keeps its own), which columns
/// may be edited, and the formats. Throws Error 13 for an element of the wrong type.
void PrepareColumns(const ListSettings& settings, const Value& column_alignment,
                    const Recordset& records, std::vector<ListColumn>& columns);
/// The same as Refresh does it: every column becomes general.
void RefreshColumns(const ListSettings& settings, const Recordset& records,
                    std::vector<ListColumn>& columns);

/// Appends a cell's text as the grid shows it: by the column's format; without one as reports show
/// it.
void AppendCellText(const ListColumn& column, const CellView& cell, std::string& text);

}  // namespace kel
