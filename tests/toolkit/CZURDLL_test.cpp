#include "toolkit/CZURDLL.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/errors.h"
#include "support/file_size_limit.h"
#include "toolkit/toolkit_fixture.h"

namespace kel {
namespace {

using testing::Line;
using testing::Texts;

const std::string kSaveLine = Line("[DLL.Save],5 : not so");

[[noreturn]] void ScreenIsGone(std::string_view /*call*/) {
  throw Error(error_number::kDeviceIoError, "no screen");
}

class CZURDLLTest : public testing::ToolkitTest {
 protected:
  int ErrorOfErrorlog() {
    const Error error = testing::ErrorOf([this] { toolkit_.ERRORLOG("x", "y", false); });
    EXPECT_TRUE(testing::Contains(error, log_.string()));
    return error.Number();
  }
  void FailToSave() { toolkit_.ReportFailure({5, "not so"}, "DLL.Save"); }
};

TEST_F(CZURDLLTest, AFailureIsRaisedThenShownThenLogged) {
  toolkit_.OnError([&](std::int32_t& number, std::string& description, bool& response) {
    desktop_->calls.push_back(std::to_string(number) + description + (response ? "!" : ""));
    EXPECT_EQ(toolkit_.LastError()->Number(), 5);
  });
  toolkit_.ShowWait(false, "Saving...");
  desktop_->on_call = [&](std::string_view) { EXPECT_EQ(Log(), ""); };
  FailToSave();
  EXPECT_EQ(desktop_->calls, (Texts{"wait Saving... -1..-1", "pointer", "5not so!", "pointer",
                                    "unload", "message"}));
  const MessageRequest& shown = desktop_->messages.at(0);
  EXPECT_EQ(shown.prompt, "5 : not so");
  EXPECT_EQ(shown.title, "Error Log");
  EXPECT_EQ(shown.icon, msgCritical);
  EXPECT_EQ(Log(), kSaveLine);
}

TEST_F(CZURDLLTest, OnlyTheResponseOfAHandlerHasAnEffect) {
  toolkit_.OnError([](std::int32_t&, std::string&, bool& response) { response = false; });
  FailToSave();
  EXPECT_TRUE(desktop_->messages.empty());
  EXPECT_EQ(Log(), "");
  toolkit_.OnError([](std::int32_t& number, std::string& description, bool&) {
    number = 0;
    throw std::exchange(description, "all is well");
  });
  FailToSave();
  EXPECT_EQ(Log(), kSaveLine);
}

TEST_F(CZURDLLTest, AHandlerThatFailsItselfIsLoggedOnceAndNotRaisedAgain) {
  toolkit_.ShowWait();
  toolkit_.OnError([&](std::int32_t&, std::string&, bool&) {
    desktop_->on_call = [](std::string_view) { throw std::out_of_range("no step"); };
    EXPECT_FALSE(toolkit_.StepWait());
    desktop_->on_call = nullptr;
  });
  FailToSave();
  EXPECT_EQ(desktop_->messages.size(), 1U);
  EXPECT_EQ(Log(), Line("[DLL.StepWait],51 : no step") + kSaveLine);
  EXPECT_EQ(toolkit_.LastError()->Number(), 5);
}

TEST_F(CZURDLLTest, AScreenThatIsGoneEndsInTheLog) {
  desktop_->on_call = ScreenIsGone;
  toolkit_.ShowWait(true, "Posting...", std::nullopt, 9);
  EXPECT_FALSE(toolkit_.LastError()) << "work does not stop for want of a window";
  EXPECT_FALSE(toolkit_.MsgBox("Save?", msgYesNo));
  EXPECT_EQ(desktop_->messages.size(), 2U) << "its own, and the one about it";
  const std::string line = Line("[DLL.MsgBox],57 : no screen");
  EXPECT_EQ(Log(), line + line);
}

TEST_F(CZURDLLTest, OnlyErrorlogRaisesALogThatIsNoPlainFile) {
  std::filesystem::create_symlink("elsewhere", log_);
  EXPECT_EQ(ErrorOfErrorlog(), error_number::kPermissionDenied);
  EXPECT_FALSE(std::filesystem::exists(log_)) << "written through the link";
  std::filesystem::remove(log_);
  ASSERT_EQ(::mkfifo(log_.c_str(), 0600), 0);  // which would keep its writer waiting
  EXPECT_EQ(ErrorOfErrorlog(), error_number::kPermissionDenied);
  FailToSave();
  EXPECT_EQ(toolkit_.LastError()->Number(), 5);
}

TEST_F(CZURDLLTest, AFullDiskKeepsTheLinesBeforeWhole) {
  FailToSave();
  {
    const testing::FileSizeLimit full(kSaveLine.size() + 10);
    EXPECT_EQ(ErrorOfErrorlog(), error_number::kDiskFull);
  }
  EXPECT_EQ(Log(), kSaveLine);
}

TEST_F(CZURDLLTest, ALineHasATwelveHourTimeAndADescriptionWithoutLineBreaks) {
  std::string expected;
  for (const auto& [hour, time] : {std::pair(0, "12:05:09 AM"), std::pair(1, "01:05:09 AM"),
                                   std::pair(12, "12:05:09 PM"), std::pair(23, "11:05:09 PM")}) {
    CurrentHost().clock = std::make_shared<testing::FixedClock>(1, 2, hour);
    toolkit_.ERRORLOG("x", "no,\r\nsorry", false);
    expected += std::string("01/02/2026 ") + time + ",[x],no, sorry\r\n";
  }
  EXPECT_EQ(Log(), expected);
}

TEST_F(CZURDLLTest, ErrorlogHandsTheBracketedLocationBack) {
  Value location = "Posting";
  toolkit_.ERRORLOG(location, "");
  EXPECT_EQ(location, Value("Posting")) << "there was nothing to tell";
  EXPECT_TRUE(desktop_->calls.empty());
  EXPECT_EQ(Log(), "");

  toolkit_.ERRORLOG(location, "out of balance", false);
  EXPECT_EQ(location, Value("[Posting]"));
  EXPECT_TRUE(desktop_->messages.empty());
  toolkit_.ERRORLOG(Value::Missing(), "no date");
  EXPECT_EQ(desktop_->messages.at(0).prompt, "no date");
  EXPECT_EQ(Log(), Line("[Posting],out of balance") + Line("[Not Specified],no date"));
}

TEST_F(CZURDLLTest, AFailureMayBeLoggedWithoutATextByItsHandlerAndInACatchBlock) {
  toolkit_.OnError([&](std::int32_t&, std::string&, bool& response) {
    response = false;
    toolkit_.ERRORLOG("Handler", "", false);
    toolkit_.ERRORLOG("Handler", "", false);  // the first has cleared the failure
  });
  FailToSave();
  toolkit_.ERRORLOG("Later", "", false);
  EXPECT_EQ(Log(), Line("[Handler],"));
  try {
    throw Error(53, "File not found");
  } catch (const Error&) {
    toolkit_.ERRORLOG("DLL->LoadPage", "", true);
  }
  EXPECT_EQ(desktop_->messages.at(0).prompt, "");
  EXPECT_EQ(Log(), Line("[Handler],") + Line("[DLL->LoadPage],"));
}

TEST_F(CZURDLLTest, WireFramesAreDrawnUnlessThereIsNoStep) {
  const RECT small{0, 0, 10, 10};
  const RECT wide{0, 0, 90, 10};
  toolkit_.DrawWireRects(small, small, toolkit_.GetSteps(small, small));
  EXPECT_TRUE(desktop_->wire_frames.empty());
  toolkit_.DrawWireRects(small, wide, toolkit_.GetSteps(small, wide));
  ASSERT_EQ(desktop_->wire_frames.size(), 1U);
  EXPECT_EQ(desktop_->wire_frames[0].steps, 10);
  EXPECT_EQ(desktop_->wire_frames[0].pause, std::chrono::milliseconds(3));
  EXPECT_EQ(toolkit_.GetSteps(small, small, 0), 0);
  EXPECT_EQ(toolkit_.LastError()->Number(), error_number::kDivisionByZero);
}

TEST_F(CZURDLLTest, AWaitWindowEndsWithItsObjectOrAStopAndWithNobodyElse) {
  EXPECT_FALSE(toolkit_.StepWait()) << "none was shown";
  toolkit_.ShowWait(true, "Posting...", 0, 9);
  CZURDLL().ShowWait(false, "Printing...");
  SharedToolkit().UnloadWait();
  EXPECT_TRUE(toolkit_.StepWait(3, "Posted"));
  desktop_->answer = false;
  EXPECT_FALSE(toolkit_.StepWait());
  EXPECT_FALSE(toolkit_.StepWait());
  EXPECT_FALSE(toolkit_.LastError());
  EXPECT_EQ(desktop_->calls, (Texts{"wait Posting... 0..9 stop", "wait Printing... -1..-1",
                                    "unload", "step 3 Posted", "step 1 -", "unload"}));
}

TEST_F(CZURDLLTest, AnObjectWithoutATemporaryFolderTellsSoAndGoesOn) {
  const char* const set = ::getenv("KELDLL_HOME");
  ASSERT_NE(set, nullptr);
  const std::string home = set;
  ::setenv("KELDLL_HOME", (log_ / "below").c_str(), 1);
  FailToSave();
  std::thread other([&] {  // which has no folder yet
    CZURDLL toolkit;
    EXPECT_TRUE(toolkit.LastError());
    EXPECT_EQ(toolkit.GetDLLTempPath(), "");
    EXPECT_TRUE(toolkit.MsgBox("still here"));
    EXPECT_FALSE(toolkit.LastError());
  });
  other.join();
  ::setenv("KELDLL_HOME", home.c_str(), 1);
}

}  // namespace
}  // namespace kel
