#include "toolkit/CZURDLL.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "common/desktop.h"
#include "common/headless_desktop.h"
#include "common/host.h"
#include "common/temp_folder.h"
#include "support/test_folder.h"
#include "toolkit/fixed_clock.h"

namespace kel {
namespace {

using testing::FixedClock;
using testing::ReadFile;
using testing::TestFolder;
using testing::WriteFile;

constexpr const char* kTime = "15/11/2026 02:05:09 PM,";

// Writes down what it is asked for; `on_message` may answer, or fail as a screen can.
class RecordingDesktop : public Desktop {
 public:
  bool ShowMessage(const MessageRequest& request) override {
    steps.emplace_back("message");
    messages.push_back(request);
    return on_message ? on_message() : true;
  }
  void ShowWait(const WaitRequest& request) override {
    steps.emplace_back("wait");
    waits.push_back(request);
    if (on_wait) on_wait();
  }
  bool StepWait(std::int32_t step, const std::optional<std::string>& caption) override {
    steps.push_back("step " + std::to_string(step) + " " + caption.value_or("-"));
    return on_step ? on_step() : true;
  }
  void UnloadWait() override { steps.emplace_back("unload"); }
  void Flash(const FlashRequest& request) override { flashes.push_back(request); }
  void SetMousePointer(MousePointer pointer) override {
    steps.emplace_back(pointer == MousePointer::kDefault ? "pointer" : "hourglass");
    if (on_pointer) on_pointer();
  }
  void DoEvents() override {}
  std::optional<RECT> ScreenRect(Object& /*control*/) override { return std::nullopt; }

  std::function<bool()> on_message;
  std::function<void()> on_wait;
  std::function<bool()> on_step;
  std::function<void()> on_pointer;
  std::vector<std::string> steps;
  std::vector<MessageRequest> messages;
  std::vector<WaitRequest> waits;
  std::vector<FlashRequest> flashes;
};

[[noreturn]] bool ScreenIsGone() { throw Error(error_number::kDeviceIoError, "no screen"); }

class CZURDLLTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    home_ = std::make_unique<TestFolder>();
    ::setenv("KELDLL_HOME", home_->Path().c_str(), 1);
    ::setenv("LC_ALL", "C", 1);
  }
  static void TearDownTestSuite() {
    ::unsetenv("KELDLL_HOME");
    ::unsetenv("LC_ALL");
    home_.reset();
  }

  void SetUp() override {
    std::filesystem::remove_all(LogFile());
    CurrentHost().desktop = desktop_;
    CurrentHost().clock = std::make_shared<FixedClock>(15, 11, 2026, 14, 5, 9);
  }
  void TearDown() override {
    CurrentHost().desktop = std::make_shared<HeadlessDesktop>();
    CurrentHost().clock = std::make_shared<SystemClock>();
  }

  static std::filesystem::path LogFile() { return TempFolder() / "Error.log"; }
  static std::string Log() {
    return std::filesystem::exists(LogFile()) ? ReadFile(LogFile()) : std::string();
  }

  static std::unique_ptr<TestFolder> home_;
  const std::shared_ptr<RecordingDesktop> desktop_ = std::make_shared<RecordingDesktop>();
  const Error failure_{error_number::kInvalidProcedureCall, "Invalid procedure call or argument"};
};

std::unique_ptr<TestFolder> CZURDLLTest::home_;

TEST_F(CZURDLLTest, AFailureIsRaisedThenShownThenLogged) {
  CZURDLL toolkit;
  std::vector<std::string> events;
  toolkit.OnError([&](std::int32_t& number, std::string& description, bool& response) {
    events.push_back(std::to_string(number) + " " + description + (response ? " yes" : " no"));
    EXPECT_TRUE(desktop_->messages.empty());
    EXPECT_EQ(Log(), "");
  });
  desktop_->on_message = [&] {
    EXPECT_EQ(Log(), "");
    return true;
  };
  toolkit.ReportFailure(failure_, "DLL.Save");

  EXPECT_EQ(events, std::vector<std::string>{"5 Invalid procedure call or argument yes"});
  EXPECT_EQ(desktop_->steps, (std::vector<std::string>{"pointer", "pointer", "unload", "message"}));
  ASSERT_EQ(desktop_->messages.size(), 1U);
  const MessageRequest& shown = desktop_->messages.front();
  EXPECT_EQ(shown.prompt, "5 : Invalid procedure call or argument");
  EXPECT_EQ(shown.title, "Error Log");
  EXPECT_EQ(shown.buttons, msgOK);
  EXPECT_EQ(shown.icon, msgCritical);
  EXPECT_FALSE(shown.animate);
  EXPECT_EQ(shown.unload_time.count(), 0);
  EXPECT_EQ(shown.converge_to, nullptr);
  EXPECT_TRUE(shown.focus);
  EXPECT_EQ(Log(), std::string(kTime) + "[DLL.Save],5 : Invalid procedure call or argument\r\n");
  ASSERT_TRUE(toolkit.LastError());
  EXPECT_EQ(toolkit.LastError()->Number(), 5);
}

TEST_F(CZURDLLTest, AHandlerThatClearsResponseTakesTheReportingOver) {
  CZURDLL toolkit;
  toolkit.OnError([](std::int32_t&, std::string&, bool& response) { response = false; });
  toolkit.ReportFailure(failure_, "DLL.Save");
  EXPECT_TRUE(desktop_->messages.empty());
  EXPECT_EQ(Log(), "");
  EXPECT_TRUE(toolkit.LastError());
}

TEST_F(CZURDLLTest, WhatAHandlerDoesToTheTextDoesNotReachTheLog) {
  CZURDLL toolkit;
  toolkit.OnError([](std::int32_t& number, std::string& description, bool&) {
    number = 0;
    description = "all is well";
  });
  toolkit.ReportFailure(failure_, "DLL.Save");
  EXPECT_EQ(Log(), std::string(kTime) + "[DLL.Save],5 : Invalid procedure call or argument\r\n");
}

TEST_F(CZURDLLTest, AHandlerThatThrowsKeepsNothingFromTheLog) {
  CZURDLL toolkit;
  toolkit.OnError(
      [](std::int32_t&, std::string&, bool&) { throw std::string("not even an error"); });
  toolkit.ReportFailure(failure_, "DLL.Save");
  EXPECT_EQ(Log(), std::string(kTime) + "[DLL.Save],5 : Invalid procedure call or argument\r\n");
}

TEST_F(CZURDLLTest, AHandlerThatFailsItselfIsLoggedOnceAndNotRaisedAgain) {
  CZURDLL toolkit;
  int events = 0;
  desktop_->on_step = ScreenIsGone;
  toolkit.OnError([&](std::int32_t&, std::string&, bool&) {
    ++events;
    EXPECT_FALSE(toolkit.StepWait());
  });
  toolkit.ReportFailure(failure_, "DLL.Save");
  EXPECT_EQ(events, 1);
  EXPECT_EQ(desktop_->messages.size(), 1U);
  EXPECT_EQ(Log(), std::string(kTime) + "[DLL.StepWait],57 : no screen\r\n" + kTime +
                       "[DLL.Save],5 : Invalid procedure call or argument\r\n");
  EXPECT_EQ(toolkit.LastError()->Number(), 5);
}

TEST_F(CZURDLLTest, AMessageBoxThatCannotBeShownEndsInTheLog) {
  CZURDLL toolkit;
  desktop_->on_message = ScreenIsGone;
  EXPECT_FALSE(toolkit.MsgBox("Save?", msgYesNo));
  EXPECT_EQ(desktop_->messages.size(), 2U);  // its own, and the one about it
  EXPECT_EQ(Log(), std::string(kTime) + "[DLL.MsgBox],57 : no screen\r\n" + kTime +
                       "[DLL.MsgBox],57 : no screen\r\n");
}

TEST_F(CZURDLLTest, APointerThatCannotBeSetDoesNotStopTheReport) {
  CZURDLL toolkit;
  desktop_->on_pointer = [] { ScreenIsGone(); };
  toolkit.ReportFailure(failure_, "DLL.Save");
  EXPECT_EQ(desktop_->messages.size(), 1U);
  EXPECT_NE(Log(), "");
}

TEST_F(CZURDLLTest, OperationsSurviveALogThatCannotBeWritten) {
  CZURDLL toolkit;
  std::filesystem::create_directory(LogFile());
  desktop_->on_step = ScreenIsGone;
  EXPECT_FALSE(toolkit.StepWait());
  EXPECT_EQ(desktop_->messages.size(), 1U);
  EXPECT_EQ(toolkit.LastError()->Description(), "no screen");

  std::filesystem::remove(LogFile());
  toolkit.ReportFailure(failure_, "DLL.Save");
  EXPECT_EQ(Log(), std::string(kTime) + "[DLL.Save],5 : Invalid procedure call or argument\r\n");
}

TEST_F(CZURDLLTest, ErrorlogRaisesItsOwnFailureToItsCaller) {
  CZURDLL toolkit;
  std::filesystem::create_directory(LogFile());
  EXPECT_THROW(toolkit.ERRORLOG("Posting", "out of balance", false), Error);
}

TEST_F(CZURDLLTest, ErrorlogWithNothingToTellDoesNothing) {
  CZURDLL toolkit;
  toolkit.ERRORLOG();
  Value location = "Posting";
  toolkit.ERRORLOG(location, "");
  EXPECT_EQ(location, Value("Posting"));
  EXPECT_TRUE(desktop_->steps.empty());
  EXPECT_EQ(Log(), "");
}

TEST_F(CZURDLLTest, ErrorlogHandsTheBracketedLocationBack) {
  CZURDLL toolkit;
  Value location = "Posting";
  toolkit.ERRORLOG(location, "out of balance", false);
  EXPECT_EQ(location, Value("[Posting]"));
  Value missing = Value::Missing();
  toolkit.ERRORLOG(missing, "no date", false);
  EXPECT_EQ(missing, Value("[Not Specified]"));
  EXPECT_TRUE(desktop_->messages.empty());
  EXPECT_EQ(Log(), std::string(kTime) + "[Posting],out of balance\r\n" + kTime +
                       "[Not Specified],no date\r\n");
}

TEST_F(CZURDLLTest, ErrorlogShowsItsTextUnlessToldNotTo) {
  CZURDLL toolkit;
  toolkit.ERRORLOG(Value::Missing(), "out of balance");
  ASSERT_EQ(desktop_->messages.size(), 1U);
  EXPECT_EQ(desktop_->messages.front().prompt, "out of balance");
}

TEST_F(CZURDLLTest, AHandlerMayLogTheFailureByItsOwnWithoutAText) {
  CZURDLL toolkit;
  toolkit.OnError([&](std::int32_t&, std::string&, bool& response) {
    response = false;
    toolkit.ERRORLOG("Handler", "", false);
    toolkit.ERRORLOG("Handler", "", false);  // the first has cleared the failure
  });
  toolkit.ReportFailure(failure_, "DLL.Save");
  EXPECT_EQ(Log(), std::string(kTime) + "[Handler],\r\n");
  toolkit.ERRORLOG("Later", "", false);
  EXPECT_EQ(Log(), std::string(kTime) + "[Handler],\r\n");
}

TEST_F(CZURDLLTest, MsgBoxPassesItsArgumentsAndAnswers) {
  CZURDLL toolkit;
  EXPECT_TRUE(toolkit.MsgBox("x"));
  EXPECT_EQ(desktop_->messages[0].buttons, msgOK);
  EXPECT_EQ(desktop_->messages[0].icon, msgInformation);
  EXPECT_EQ(desktop_->messages[0].title, std::nullopt);

  desktop_->on_message = [] { return false; };
  EXPECT_FALSE(toolkit.MsgBox("Delete?", msgYesNo + msgDefault2, "Ledger", msgDelete, true, 2000,
                              nullptr, false));
  const MessageRequest& asked = desktop_->messages[1];
  EXPECT_EQ(asked.prompt, "Delete?");
  EXPECT_EQ(asked.buttons, 10);
  EXPECT_EQ(asked.title, "Ledger");
  EXPECT_EQ(asked.icon, msgDelete);
  EXPECT_TRUE(asked.animate);
  EXPECT_EQ(asked.unload_time.count(), 2000);
  EXPECT_FALSE(asked.focus);
}

TEST_F(CZURDLLTest, StepWaitWithoutAWindowIsFalseAndLeavesNothingOpen) {
  CZURDLL toolkit;
  desktop_->on_step = [] { return false; };
  EXPECT_FALSE(toolkit.StepWait(3, "Posting"));
  EXPECT_EQ(desktop_->steps, (std::vector<std::string>{"step 3 Posting", "unload"}));
  EXPECT_FALSE(toolkit.LastError());
}

TEST_F(CZURDLLTest, ShowWaitIgnoresFailures) {
  CZURDLL toolkit;
  desktop_->on_wait = [] { ScreenIsGone(); };
  toolkit.ShowWait(true, "Posting...", std::nullopt, 9);
  EXPECT_FALSE(toolkit.LastError());
  EXPECT_TRUE(desktop_->messages.empty());
  ASSERT_EQ(desktop_->waits.size(), 1U);
  EXPECT_TRUE(desktop_->waits.front().stop_button);
  EXPECT_EQ(desktop_->waits.front().caption, "Posting...");
  EXPECT_EQ(desktop_->waits.front().min, std::nullopt);
  EXPECT_EQ(desktop_->waits.front().max, 9);
}

TEST_F(CZURDLLTest, AnObjectThatEndsClosesTheWaitWindowItOpenedAndNoOther) {
  { const CZURDLL idle; }
  EXPECT_TRUE(desktop_->steps.empty());
  {
    CZURDLL finished;
    finished.ShowWait();
    finished.UnloadWait();
    desktop_->steps.clear();
  }
  EXPECT_TRUE(desktop_->steps.empty());
  {
    CZURDLL waiting;
    waiting.ShowWait();
  }
  EXPECT_EQ(desktop_->steps, (std::vector<std::string>{"wait", "unload"}));
}

TEST_F(CZURDLLTest, FlashStaysForAMillisecondAtLeast) {
  CZURDLL toolkit;
  toolkit.Flash("Saved");
  toolkit.Flash("Saved", "Ledger", -5, zurAlignRightBottom);
  ASSERT_EQ(desktop_->flashes.size(), 2U);
  EXPECT_EQ(desktop_->flashes[0].interval.count(), 3000);
  EXPECT_EQ(desktop_->flashes[0].align, zurAlignCenter);
  EXPECT_EQ(desktop_->flashes[1].interval.count(), 1);
  EXPECT_EQ(desktop_->flashes[1].subject, "Ledger");
}

TEST_F(CZURDLLTest, CreationEmptiesTheTemporaryFolderButKeepsTheLog) {
  WriteFile(TempFolder() / "old.txt", "x");
  WriteFile(LogFile(), "kept");
  CZURDLL toolkit;
  EXPECT_EQ(toolkit.GetDLLTempPath(), TempFolder().string());
  EXPECT_FALSE(std::filesystem::exists(TempFolder() / "old.txt"));
  EXPECT_EQ(Log(), "kept");
}

TEST_F(CZURDLLTest, AnObjectWithoutATemporaryFolderTellsSoAndGoesOn) {
  const auto blocked = *home_ / "file";
  WriteFile(blocked, "");
  std::thread([&] {  // a thread of its own has a folder of its own
    ::setenv("KELDLL_HOME", (blocked / "below").c_str(), 1);
    CZURDLL toolkit;
    EXPECT_TRUE(toolkit.LastError());
    EXPECT_EQ(toolkit.GetDLLTempPath(), "");
    EXPECT_EQ(desktop_->messages.size(), 1U);
    EXPECT_TRUE(toolkit.MsgBox("still here"));
    EXPECT_FALSE(toolkit.LastError());
    ::setenv("KELDLL_HOME", home_->Path().c_str(), 1);
  })
      .join();
}

TEST_F(CZURDLLTest, EveryThreadHasOneSharedToolkit) {
  CZURDLL* const ours = &SharedToolkit();
  EXPECT_EQ(ours, &SharedToolkit());
  std::thread([ours] { EXPECT_NE(ours, &SharedToolkit()); }).join();
}

TEST_F(CZURDLLTest, AnyExceptionBecomesANumberedFailure) {
  struct Case {
    std::function<void()> thrower;
    int number;
  };
  const std::vector<Case> cases = {
      {[] { throw Error(61, "Disk full"); }, 61},
      {[] { throw std::bad_alloc(); }, error_number::kOutOfMemory},
      {[] { throw std::out_of_range("at"); }, error_number::kInternalError},
      {[] { throw 42; }, error_number::kInternalError},
  };
  CZURDLL toolkit;
  for (const Case& one : cases) {
    desktop_->on_step = [&one] {
      one.thrower();
      return true;
    };
    EXPECT_FALSE(toolkit.StepWait());
    EXPECT_EQ(toolkit.LastError()->Number(), one.number);
  }
}

}  // namespace
}  // namespace kel
