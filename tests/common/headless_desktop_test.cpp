#include "common/headless_desktop.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "common/host.h"

namespace kel {
namespace {

std::string StandardErrorOf(const MessageRequest& request) {
  testing::internal::CaptureStderr();
  HeadlessDesktop().ShowMessage(request);
  return testing::internal::GetCapturedStderr();
}

TEST(HeadlessDesktop, AMessageIsOneLineOnStandardError) {
  MessageRequest request;
  request.prompt = "Could not save.\r\nTry again\nlater";
  EXPECT_EQ(StandardErrorOf(request), "Information: Could not save. Try again later\n");
  request.title = "  Trial Balance ";
  EXPECT_EQ(StandardErrorOf(request), "Trial Balance: Could not save. Try again later\n");
}

TEST(HeadlessDesktop, AFlashIsALineWithItsSubject) {
  testing::internal::CaptureStderr();
  HeadlessDesktop desktop;
  FlashRequest request;
  request.message = "Saved";
  desktop.Flash(request);
  request.subject = "Ledger";
  desktop.Flash(request);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Saved\nLedger: Saved\n");
}

TEST(HeadlessDesktop, TheAnswerIsTheDefaultButton) {
  const std::vector<std::pair<int, bool>> cases = {
      {msgOK, true},
      {msgOK + msgDefault2, true},
      {msgYesNo, true},
      {msgYesNo + msgDefault1, true},
      {msgYesNo + msgDefault2, false},
      {msgOKCancel, true},
      {msgOKCancel + msgDefault2, false},
  };
  testing::internal::CaptureStderr();
  HeadlessDesktop desktop;
  for (const auto& [buttons, answer] : cases) {
    MessageRequest request;
    request.buttons = buttons;
    EXPECT_EQ(desktop.ShowMessage(request), answer) << buttons;
  }
  testing::internal::GetCapturedStderr();
}

TEST(HeadlessDesktop, WaitingGoesOnUntilTheWindowIsUnloaded) {
  HeadlessDesktop desktop;
  EXPECT_FALSE(desktop.StepWait(1, "Page 1"));
  desktop.ShowWait({});
  EXPECT_TRUE(desktop.StepWait(1, "Page 1"));
  desktop.UnloadWait();
  EXPECT_FALSE(desktop.StepWait(1, std::nullopt));
  desktop.UnloadWait();
}

TEST(Host, AFreshProcessHasEveryPort) {
  Host& host = CurrentHost();
  EXPECT_NE(dynamic_cast<HeadlessDesktop*>(host.desktop.get()), nullptr);
  EXPECT_NE(dynamic_cast<SystemClock*>(host.clock.get()), nullptr);
  EXPECT_EQ(host.settings->Read("Setup", "Mode"), std::nullopt);
}

}  // namespace
}  // namespace kel
