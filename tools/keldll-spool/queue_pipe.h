// A raw job to a print queue.
#pragma once

#include <functional>
#include <string>

#include "common/file.h"

namespace kel::spool {

/// Lets `write` write a job into a print queue and waits until the queue has taken it, through the
/// program `lp` of the system's print service. Throws Error 482 with what the print service says,
/// and when there is no `lp`.
void SendToQueue(const std::string& queue, const std::string& title,
                 const std::function<void(OutputFile&)>& write);

}  // namespace kel::spool
