#include "keldll-spool/queue_pipe.h"

#include <unistd.h>

#include <exception>

#include "common/error.h"
#include "common/text_cells.h"
#include "platform/posix/child_program.h"

namespace kel::spool {
namespace {

[[noreturn]] void Fail(const std::string& queue, const std::string& reason) {
  throw Error(error_number::kPrinterError, "cannot print to the queue " + queue + ": " + reason);
}

}  // namespace

void SendToQueue(const std::string& queue, const std::string& title,
                 const std::function<void(OutputFile&)>& write) {
  Pipe job = MakePipe();
  Pipe answer = MakePipe();
  ChildProgram lp;
  lp.Give(job.out, STDIN_FILENO);
  lp.Give(answer.in, STDERR_FILENO);
  try {
    lp.Start({"lp", "-d", queue, "-o", "raw", "-t", title});
  } catch (const Error& failure) {
    Fail(queue, failure.Description());
  }
  job.out = Descriptor();
  answer.in = Descriptor();

  std::exception_ptr failure;
  try {
    OutputFile pipe("/dev/fd/" + std::to_string(job.in.Get()));
    job.in = Descriptor();
    write(pipe);
  } catch (const Error&) {
    failure = std::current_exception();  // when lp has ended, what it says is the reason
    lp.Stop();                           // or it would print the part that it has
  }
  job.in = Descriptor();
  const std::string said(TrimBlanks(CleanText(ReadToEnd(answer.out))));
  const bool taken = lp.Succeeded(said.empty());
  if (failure && said.empty()) std::rethrow_exception(failure);
  if (!taken) Fail(queue, said.empty() ? "lp failed" : said);
}

}  // namespace kel::spool
