// Sending one text-mode job.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kel::spool {

struct Part {
  std::filesystem::path file;
  bool is_text = false;
};

struct Job {
  std::filesystem::path file;  // the port; empty for a queue
  std::string queue;
  std::string title;
  std::string code_page;
  std::vector<Part> parts;
};

/// Sends the parts in their order and waits until the port has taken them all. Throws Error.
void Send(const Job& job);

}  // namespace kel::spool
