// keldll words: amounts in words.
#pragma once

#include <span>
#include <string>

namespace kel::command {

/// `words` are those after the verb. Throws UsageError, else Error.
void RunWords(std::span<const std::string> words);

}  // namespace kel::command
