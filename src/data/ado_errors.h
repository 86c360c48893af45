// ADO's errors, by their published numbers and sentences.
#pragma once

#include <string>

#include "common/error.h"

namespace kel {

inline Error NoCurrentRecord() {
  return {3021, "Either BOF or EOF is True, or the current record has been deleted."};
}

inline Error WrongArguments(const std::string& reason) {
  return {3001,
          "Arguments are of the wrong type, are out of acceptable range, or are in conflict "
          "with one another: " +
              reason};
}

inline Error NotAllowedHere(const std::string& reason) {
  return {3219, "Operation is not allowed in this context: " + reason};
}

inline Error NotSupported(const std::string& reason) {
  return {3251, "Current Recordset does not support " + reason +
                    ". This may be a limitation of the provider, or of the selected locktype."};
}

inline Error ItemNotFound() {
  return {3265,
          "Item cannot be found in the collection corresponding to the requested name or ordinal."};
}

inline Error ObjectIsClosed() {
  return {3704, "Operation is not allowed when the object is closed."};
}

inline Error ObjectIsOpen() { return {3705, "Operation is not allowed when the object is open."}; }

/// OLE DB's errors of rows, which ADO hands on as they are.
inline constexpr int kRowNotFound = -2147217864;        // DB_E_CONCURRENCYVIOLATION
inline constexpr int kNotScrollable = -2147217884;      // DB_E_CANTSCROLLBACKWARDS
inline constexpr int kKeyIsInsufficient = -2147217887;  // DB_E_ERRORSOCCURRED
inline constexpr int kRowIsDeleted = -2147217885;       // DB_E_DELETEDROW

inline Error RowChangedMeanwhile() {
  return {kRowNotFound,
          "Row cannot be located for updating. Some values may have been changed since it was last "
          "read."};
}

inline Error RowIsDeleted() {
  return {kRowIsDeleted, "Row handle referred to a deleted row or a row marked for deletion."};
}

inline Error CannotGoBack() {
  return {kNotScrollable, "Rowset does not support fetching backward."};
}

inline Error KeyIsInsufficient(const std::string& reason) {
  return {kKeyIsInsufficient, "Key column information is insufficient or incorrect: " + reason};
}

}  // namespace kel
