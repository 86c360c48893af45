// Standard input, output and error.
#pragma once

#include <string_view>

namespace kel::command {

/// Takes the places of standard streams that the program was started without, so that no database
/// or output file lands on them. Call it before any file is opened.
void ReserveStandardStreams();

/// Writes all of `bytes`. Throws Error when standard output does not take them.
void WriteStandardOutput(std::string_view bytes);

}  // namespace kel::command
