#include "preview/preview_host.h"

namespace kel {

PreviewHost& CurrentPreviewHost() {
  static PreviewHost host;
  return host;
}

}  // namespace kel
