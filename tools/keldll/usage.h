// What the command says about how it is called.
#pragma once

#include <string_view>

namespace kel::command {

/// The usage of a verb, or of the whole command for "". Empty for what is no verb.
std::string_view UsageOf(std::string_view verb);

}  // namespace kel::command
