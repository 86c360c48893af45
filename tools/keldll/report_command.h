// keldll report: a table laid out into pages, saved or shown.
#pragma once

#include <span>
#include <string>

namespace kel::command {

/// `words` are those after the verb. Throws UsageError, else Error.
void RunReport(std::span<const std::string> words);

}  // namespace kel::command
