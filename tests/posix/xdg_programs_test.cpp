// The desktop's programs: the real ones, and scripts in their place that do what is hard to get
// from these.
#include "platform/posix/xdg_programs.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xlsxwriter.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "common/handover.h"
#include "common/temp_folder.h"
#include "support/errors.h"
#include "support/test_folder.h"

namespace kel {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ErrorOf;
using testing::ReadFile;
using testing::WriteFile;

bool GoOn() { return true; }

// Of a process that has ended but that nobody has asked after, nothing is left that could act.
bool Runs(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/stat");
  std::string number, name, state;
  return status >> number >> name >> state && state != "Z";
}

class XdgProgramsTest : public ::testing::Test {
 public:
  ~XdgProgramsTest() override { ::setenv("PATH", path_.c_str(), 1); }

 protected:
  XdgProgramsTest() {
    fs::create_directory(folder_ / "bin");
    ::setenv("FOLDER", folder_.Path().c_str(), 1);
  }

  void Script(const std::string& name, const std::string& text) const {
    const fs::path file = folder_ / "bin" / name;
    WriteFile(file, "#!/bin/sh\n" + text + "\n");
    fs::permissions(file, fs::perms::owner_all);
  }
  // No program is found but the scripts.
  void UseScriptsOnly() const { ::setenv("PATH", (folder_ / "bin").c_str(), 1); }

  pid_t WrittenNumber(const std::string& name) const {
    return static_cast<pid_t>(std::stol(ReadFile(folder_ / name)));
  }
  fs::path File(const std::string& name) const {
    WriteFile(folder_ / name, "Cash 1,250.00\n");
    return folder_ / name;
  }
  // What a script that does this has got: its arguments, each with a NUL behind it.
  static constexpr const char* kRecord = R"(printf '%s\0' "$@" >"$FOLDER/got")";
  std::string Got() const { return ReadFile(folder_ / "got"); }

  std::string path_ = std::getenv("PATH");
  testing::TestFolder folder_;
  XdgPrograms programs_;
};

constexpr std::array<const char*, 7> kOddNames = {"-n",
                                                  "a  b",
                                                  "\"q\" it's",
                                                  "$(touch x)",
                                                  "`touch x`;|&",
                                                  "50%41 #?",
                                                  "\xe0\xa4\xb9\xe0\xa4\xbf"};

TEST_F(XdgProgramsTest, TheUsersProgramGetsTheFileByItsWholeNameWhateverThatIs) {
  Script("viewer", kRecord);
  fs::create_directories(folder_ / "data/applications");
  WriteFile(folder_ / "data/applications/viewer.desktop",
            "[Desktop Entry]\nType=Application\nName=Viewer\nMimeType=text/plain;\nExec=" +
                (folder_ / "bin/viewer").string() + " %f\n");
  WriteFile(folder_ / "mimeapps.list", "[Default Applications]\ntext/plain=viewer.desktop\n");
  ::setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1);
  ::setenv("XDG_CONFIG_HOME", folder_.Path().c_str(), 1);
  ::setenv("XDG_CURRENT_DESKTOP", "X-Generic", 1);
  ::setenv("DISPLAY", ":none", 1);
  fs::current_path(folder_.Path());
  for (const std::string name : kOddNames) {
    File(name + ".txt");
    programs_.Open(name + ".txt");
    EXPECT_EQ(Got(), (folder_ / name).string() + ".txt" + '\0');
  }
  EXPECT_FALSE(fs::exists("x"));
}

TEST_F(XdgProgramsTest, TheMailProgramGetsSubjectAndAttachmentWhateverTheyAre) {
  Script("mailer", kRecord);
  ::setenv("MAILER", (folder_ / "bin/mailer").c_str(), 1);
  const auto attached = [&](const std::string& name) {
    return "&attach=" + folder_.Path().string() + "/" + name + ".xls" + '\0';
  };
  const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
      {"--help", "$(touch x)", "?subject=--help" + attached("%24%28touch%20x%29")},
      {"`x` & 50% \\n", "-a", "?subject=%60x%60%20%26%2050%25%20%5Cn" + attached("-a")},
      {"a\nBcc: b@c", "q\"%41", "?subject=a%20Bcc%3A%20b%40c" + attached("q%22%2541")},
      {"\xe0\xa4\xb9", "\xe0\xa4\xb9", "?subject=%E0%A4%B9" + attached("%E0%A4%B9")},
      {"", "Sales", "?attach=" + attached("Sales").substr(8)}};
  for (const auto& [subject, name, expected] : cases) {
    programs_.ComposeMail(subject, File(name + ".xls"));
    EXPECT_EQ(Got(), "mailto:" + expected);
  }
}

TEST_F(XdgProgramsTest, AnAttachmentThatItsNameWouldLoseIsAttachedUnderOneThatStays) {
  Script("xdg-email", kRecord);
  UseScriptsOnly();
  programs_.ComposeMail("Sales", File("May's \\n,\n1.xls"));
  const std::string got = Got();
  const std::size_t start = got.find('/');
  const fs::path attachment = got.substr(start, got.find('\0', start) - start);
  EXPECT_EQ(attachment.filename(), "May_s _n__1.xls");
  EXPECT_EQ(ReadFile(attachment), "Cash 1,250.00\n");
  EXPECT_EQ(attachment.parent_path().parent_path(), TempFolder() / kHandoverFolderName);
}

TEST_F(XdgProgramsTest, AProgramThatIsNotThereIsNamed) {
  fs::create_directory(folder_ / "bin/xdg-open");  // found by its name, but no program
  WriteFile(folder_ / "bin/soffice", "");
  UseScriptsOnly();
  const fs::path file = File("a.xls");
  const std::vector<std::pair<std::function<void()>, const char*>> cases = {
      {[&] { programs_.Open(file); }, "a.xls: the program xdg-open was not found"},
      {[&] { programs_.ComposeMail("a", file); }, "the program xdg-email was not found"},
      {[&] { programs_.RequireSheetMaker(); }, "(*.xlsx)"},
      {[&] { programs_.MakeSheet(file, file, GoOn); }, "LibreOffice was not found"}};
  for (const auto& [operation, expected] : cases) {
    const Error error = ErrorOf(operation);
    EXPECT_EQ(error.Number(), error_number::kCannotCreateObject);
    EXPECT_TRUE(Contains(error, expected));
  }
}

TEST_F(XdgProgramsTest, AFailureIsToldUnlessTheHostIgnoresItsChildrensEnds) {
  const Error missing = ErrorOf([&] { programs_.Open(folder_ / "none.txt"); });  // the real one
  EXPECT_EQ(missing.Number(), error_number::kDeviceIoError);
  EXPECT_TRUE(Contains(missing, "none.txt: xdg-open failed (the file does not exist)"));

  Script("xdg-email", "exit 3");
  UseScriptsOnly();
  const auto mail = [&] { programs_.ComposeMail("a", File("a.xls")); };
  EXPECT_TRUE(Contains(ErrorOf(mail), "a.xls: xdg-email failed (there is no program for it)"));
  const auto before = std::signal(SIGCHLD, SIG_IGN);
  EXPECT_NO_THROW(mail());
  std::signal(SIGCHLD, before);
}

TEST_F(XdgProgramsTest, AProgramThatGoesOnIsLeftApartFromTheHostAndNotForgotten) {
  Script("xdg-open", R"(echo $$ >"$FOLDER/number"; exec /bin/sleep 1000)");
  UseScriptsOnly();
  programs_.Open(File("a.txt"));
  const pid_t viewer = WrittenNumber("number");
  EXPECT_TRUE(Runs(viewer));
  EXPECT_EQ(::getsid(viewer), viewer);

  siginfo_t end{};
  ::kill(viewer, SIGTERM);
  ::waitid(P_PID, static_cast<id_t>(viewer), &end, WEXITED | WNOWAIT);
  Script("xdg-open", "");
  programs_.Open(File("a.txt"));
  EXPECT_EQ(::waitpid(viewer, nullptr, 0), -1) << "it is still in the list of processes";
}

TEST_F(XdgProgramsTest, StoppingLeavesNoProcessNoSheetAndNoWorkFile) {
  Script(
      "soffice",
      R"(trap '' TERM; /bin/sleep 1000 & echo $! >"$FOLDER/child"; echo $$ >"$FOLDER/all"; wait)");
  UseScriptsOnly();
  const fs::path sheet = folder_ / "a.xls";
  WriteFile(sheet, "old");
  const auto until_all_run = [&] { return !fs::exists(folder_ / "all"); };
  EXPECT_FALSE(programs_.MakeSheet(File("a.xlsx"), sheet, until_all_run));
  EXPECT_FALSE(Runs(WrittenNumber("all")));
  EXPECT_FALSE(Runs(WrittenNumber("child")));
  EXPECT_EQ(ReadFile(sheet), "old");
  for (const auto& left : fs::directory_iterator(TempFolder())) {
    EXPECT_FALSE(left.is_directory() && left.path().filename() != kHandoverFolderName) << left;
  }
}

TEST_F(XdgProgramsTest, ASheetThatLibreOfficeOnlySaysItHasMadeIsAnError) {
  UseScriptsOnly();
  const fs::path sheet = folder_ / "a.xls";
  WriteFile(sheet, "old");
  for (const char* script :
       {"exit 0", R"(: >"${10}/sheet.xls")", R"(echo half >"${10}/sheet.xls"; exit 1)"}) {
    Script("libreoffice", script);
    const Error error = ErrorOf([&] { programs_.MakeSheet(File("a.xlsx"), sheet, GoOn); });
    EXPECT_TRUE(Contains(error, "a.xls: LibreOffice failed")) << script;
    EXPECT_EQ(ReadFile(sheet), "old");
  }
}

TEST_F(XdgProgramsTest, LibreOfficeMakesASheetInFoldersOfAnyName) {
  const fs::path odd = folder_ / "50%41 $HOME \"'q\n\xe0\xa4\xb9";
  fs::create_directory(odd);
  ::setenv("KELDLL_HOME", odd.c_str(), 1);
  lxw_workbook* const book = ::workbook_new((odd / "-a.xlsx").c_str());
  ::worksheet_write_number(::workbook_add_worksheet(book, nullptr), 0, 0, 1250, nullptr);
  ASSERT_EQ(::workbook_close(book), LXW_NO_ERROR);
  std::thread([&] {  // which gets a temporary folder of its own, in there
    EXPECT_TRUE(programs_.MakeSheet(odd / "-a.xlsx", odd / "b.xls", GoOn));
    EXPECT_EQ(TempFolder().parent_path(), odd);
  })
      .join();
  EXPECT_EQ(ReadFile(odd / "b.xls").substr(0, 4), "\xd0\xcf\x11\xe0");  // a compound file
}

}  // namespace
}  // namespace kel
