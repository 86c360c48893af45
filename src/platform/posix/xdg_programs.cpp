#include "platform/posix/xdg_programs.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string_view>
#include <system_error>
#include <vector>

#include "common/error.h"
#include "common/file.h"
#include "common/handover.h"
#include "common/work_folder.h"
#include "platform/posix/child_program.h"
#include "platform/posix/program_path.h"

namespace kel {
namespace {

namespace fs = std::filesystem;

// Longer than a starter takes to tell that it has failed. One that then still goes on is itself
// what the user sees, or is about to start it.
constexpr std::chrono::milliseconds kTimeToFail{3000};
constexpr std::chrono::milliseconds kBetweenQuestions{20};

fs::path Required(const char* program, const std::string& what_failed) {
  fs::path path = ProgramPath(program);
  if (!path.empty()) return path;
  throw Error(error_number::kCannotCreateObject,
              what_failed + ": the program " + program + " was not found; install xdg-utils");
}

void MakeSilent(ChildProgram& program) {
  for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) program.GiveNothing(file);
}

// The exit statuses of xdg-utils.
std::string Meaning(int status) {
  switch (status) {
    case 2:
      return "the file does not exist";
    case 3:
      return "there is no program for it";
    case 4:
      return "its program failed";
    case 5:
      return "the file may not be read";
    default:
      return "exit status " + std::to_string(status);
  }
}

void Show(std::vector<std::string> arguments, const std::string& what_failed) {
  const std::string name = fs::path(arguments.front()).filename().string();
  ChildProgram starter;
  starter.SetApart();
  MakeSilent(starter);
  starter.Start(std::move(arguments));
  if (!starter.EndsWithin(kTimeToFail)) {
    starter.LeaveRunning();
    return;
  }
  const int status = starter.Status().value_or(0);
  if (status == 0) return;
  throw Error(error_number::kDeviceIoError,
              what_failed + ": " + name + " failed (" + Meaning(status) + ")");
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

// RFC 3986.
std::string PercentEncoded(std::string_view text, std::string_view keep) {
  static constexpr std::string_view kHexadecimal = "0123456789ABCDEF";
  static constexpr std::string_view kUnreserved =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (kUnreserved.find(c) != std::string_view::npos || keep.find(c) != std::string_view::npos) {
      encoded += c;
    } else {
      encoded += {'%', kHexadecimal[byte / 16], kHexadecimal[byte % 16]};
    }
  }
  return encoded;
}

// As a URI: xdg-email gives the text of its own --subject to the shell's echo, which reads
// backslashes and "-n" its own way, and takes "--help" anywhere for a question.
std::string MailTo(std::string subject) {
  std::replace_if(subject.begin(), subject.end(), IsControl, ' ');
  return subject.empty() ? "mailto:?" : "mailto:?subject=" + PercentEncoded(subject, "");
}

void LinkOrCopy(const fs::path& from, const fs::path& to) {
  std::error_code failure;
  fs::create_hard_link(from, to, failure);
  if (!failure) return;
  OutputFile copy(to);
  InputFile source(from);
  copy.WriteAll(source);
  copy.Commit();
}

// xdg-email gives the path to echo as well, and for Thunderbird writes it between quotes into a
// list with commas: a name with one of these would be no attachment at all.
fs::path Attachable(const fs::path& file) {
  std::string name = file.filename().string();
  const auto is_lost = [](char c) { return IsControl(c) || c == '\\' || c == '\'' || c == ','; };
  if (std::none_of(name.begin(), name.end(), is_lost)) return file;
  std::replace_if(name.begin(), name.end(), is_lost, '_');
  fs::path attachable = HandoverPathNamed(name);
  LinkOrCopy(file, attachable);
  return attachable;
}

fs::path SheetMaker() {
  for (const char* name :
       {"soffice", "libreoffice", "/Applications/LibreOffice.app/Contents/MacOS/soffice"}) {
    fs::path path = ProgramPath(name);
    if (!path.empty()) return path;
  }
  throw Error(error_number::kCannotCreateObject,
              "cannot make an .xls file: LibreOffice was not found; choose the format "
              "\"Microsoft Excel Workbook (*.xlsx)\" instead");
}

std::string UrlOf(const fs::path& file) { return "file://" + PercentEncoded(file.string(), "/"); }

// LibreOffice reads "%41" in the path of a folder as "A", sometimes; in a URL always.
std::string OutFolder(const fs::path& folder) {
  const std::string path = folder.string();
  return path.find('%') == std::string::npos ? path : UrlOf(folder);
}

// LibreOffice says success whatever has happened.
void RequireMade(const fs::path& made, const ChildProgram& office, const fs::path& wanted) {
  std::error_code missing;
  const bool is_there = fs::file_size(made, missing) > 0 && !missing;
  const int status = office.Status().value_or(0);
  if (is_there && status == 0) return;
  throw Error(error_number::kDeviceIoError, "cannot make " + wanted.string() +
                                                ": LibreOffice failed (exit status " +
                                                std::to_string(status) + ")");
}

}  // namespace

void XdgPrograms::Open(const fs::path& file) {
  const std::string path = fs::absolute(file).string();  // never to be taken for an option
  const std::string what_failed = "cannot open " + path;
  Show({Required("xdg-open", what_failed).string(), path}, what_failed);
}

void XdgPrograms::ComposeMail(const std::string& subject, const fs::path& attachment) {
  const std::string path = Attachable(fs::absolute(attachment)).string();
  const std::string what_failed = "cannot mail " + path;
  const fs::path program = Required("xdg-email", what_failed);
  Show({program.string(), "--utf8", "--attach", path, MailTo(subject)}, what_failed);
}

void XdgPrograms::RequireSheetMaker() { SheetMaker(); }

bool XdgPrograms::MakeSheet(const fs::path& workbook, const fs::path& sheet,
                            const std::function<bool()>& go_on) {
  const fs::path program = SheetMaker();
  const WorkFolder folder;
  const fs::path source = folder.Path() / "sheet.xlsx";
  const fs::path made = folder.Path() / "sheet.xls";
  LinkOrCopy(fs::absolute(workbook), source);
  ChildProgram office;
  office.SetApart();
  MakeSilent(office);
  // With a profile of its own neither the user's settings nor an office that runs play a part.
  office.Start({program.string(), "--headless", "--norestore", "--nologo", "--nofirststartwizard",
                "-env:UserInstallation=" + UrlOf(folder.Path() / "profile"), "--convert-to",
                "xls:MS Excel 97", "--outdir", OutFolder(folder.Path()), UrlOf(source)});
  while (!office.EndsWithin(kBetweenQuestions)) {
    if (go_on()) continue;
    office.StopWholly();
    return false;
  }
  RequireMade(made, office, sheet);
  OutputFile target(sheet);
  InputFile whole(made, Links::kRefuse);
  target.WriteAll(whole);
  target.Commit();
  return true;
}

}  // namespace kel
