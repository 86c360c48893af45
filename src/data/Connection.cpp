#include "data/Connection.h"

#include "data/ado_errors.h"

namespace kel {

std::int64_t Connection::Execute(std::string_view sql) { return Driver().Execute(sql); }

kel::Driver& Connection::Driver() {
  if (driver_ == nullptr) throw ObjectIsClosed();
  return *driver_;
}

}  // namespace kel
