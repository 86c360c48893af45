// ADO's errors, by their published numbers and sentences.
#pragma once

#include "common/error.h"

namespace kel {

inline Error NoCurrentRecord() {
  return {3021, "Either BOF or EOF is True, or the current record has been deleted."};
}

inline Error ItemNotFound() {
  return {3265,
          "Item cannot be found in the collection corresponding to the requested name or ordinal."};
}

inline Error ObjectIsClosed() {
  return {3704, "Operation is not allowed when the object is closed."};
}

inline Error ObjectIsOpen() { return {3705, "Operation is not allowed when the object is open."}; }

}  // namespace kel
