// keldll settings: the stored settings of the user.
#pragma once

#include <span>
#include <string>

namespace kel::command {

/// `words` are those after the verb; values may begin with a hyphen. Throws UsageError, else Error.
void RunSettings(std::span<const std::string> words);

}  // namespace kel::command
