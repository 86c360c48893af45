#include "export/office.h"

#include "export/native_office.h"

namespace kel {

ExportHost& CurrentExportHost() {
  static ExportHost host{std::make_shared<NativeOffice>(nullptr)};
  return host;
}

}  // namespace kel
