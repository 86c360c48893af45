#include "keldll-spool/port_job.h"

#include <algorithm>
#include <string_view>

#include "common/file.h"
#include "engine/code_page.h"
#include "keldll-spool/queue_pipe.h"

namespace kel::spool {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 18;

// Up to the last line end or, in a line longer than a block, the last ASCII character.
std::size_t WholeCharacters(std::string_view block) {
  const std::size_t line_end = block.rfind('\n');
  if (line_end != std::string_view::npos) return line_end + 1;
  const auto ascii = std::find_if(block.rbegin(), block.rend(),
                                  [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  // What follows a letter may be its combining mark: the letter stays with it.
  const auto before = static_cast<std::size_t>(block.rend() - ascii);
  return before > 1 ? before - 1 : block.size();
}

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
    if (count > 0) {
      const std::size_t whole = WholeCharacters(block);
      rest = block.substr(whole);
      block.resize(whole);
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
