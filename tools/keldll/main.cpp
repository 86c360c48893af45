#include <string>
#include <vector>

#include "keldll/command.h"
#include "keldll/standard_streams.h"

int main(int argc, char** argv) {
  kel::command::ReserveStandardStreams();
  const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
  return kel::command::Run(words);
}
