#include "keldll-spool/port_job.h"

#include <string_view>

#include "common/file.h"
#include "engine/code_page.h"
#include "keldll-spool/queue_pipe.h"

namespace kel::spool {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 18;

// Lines are converted whole, as far as they are not longer than a block.
void WriteEncoded(OutputFile& port, InputFile& source, const CodePage& code_page) {
  std::string block;
  std::string encoded;
  std::string rest;
  for (;;) {
    block.swap(rest);
    rest.clear();
    const std::size_t kept = block.size();
    block.resize(kept + kBlock);
    const std::size_t count = source.Read(std::span(block).subspan(kept));
    block.resize(kept + count);
    const std::size_t line_end = block.rfind('\n');
    if (count > 0 && line_end != std::string::npos) {
      rest = block.substr(line_end + 1);
      block.resize(line_end + 1);
    }
    encoded.clear();
    code_page.AppendEncoded(encoded, block);
    port.Write(encoded);
    if (count == 0) return;
  }
}

void WriteParts(OutputFile& port, const Job& job) {
  const CodePage code_page(job.code_page);
  for (const Part& part : job.parts) {
    InputFile source(part.file);
    if (part.is_text && !code_page.IsNone()) {
      WriteEncoded(port, source, code_page);
    } else {
      port.WriteAll(source);
    }
  }
}

}  // namespace

void Send(const Job& job) {
  if (!job.queue.empty()) {
    SendToQueue(job.queue, job.title, [&](OutputFile& pipe) { WriteParts(pipe, job); });
    return;
  }
  OutputFile port(job.file);
  port.WaitForTurn();
  WriteParts(port, job);
  port.Commit();
}

}  // namespace kel::spool
