#include "common/headless_desktop.h"

#include <gtest/gtest.h>

namespace kel {
namespace {

TEST(HeadlessDesktop, MessagesAreOneLineOfStandardErrorAndTheAnswerTheDefaultButton) {
  HeadlessDesktop desktop;
  ::testing::internal::CaptureStderr();
  EXPECT_TRUE(desktop.ShowMessage({"Not saved.\r\nTry again\nlater", msgOK + msgDefault2, {}}));
  EXPECT_TRUE(desktop.ShowMessage({"Go on?", msgYesNo, "  Trial Balance "}));
  EXPECT_FALSE(desktop.ShowMessage({"Go on?", msgYesNo + msgDefault2, "A"}));
  EXPECT_TRUE(desktop.ShowMessage({"Go on?", msgOKCancel, "B"}));
  EXPECT_FALSE(desktop.ShowMessage({"Go on?", msgOKCancel + msgDefault2, "C"}));
  desktop.Flash({"Saved", {}});
  desktop.Flash({"Saved", "Ledger"});
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "Information: Not saved. Try again later\n"
            "Trial Balance: Go on?\nA: Go on?\nB: Go on?\nC: Go on?\n"
            "Saved\nLedger: Saved\n");
}

}  // namespace
}  // namespace kel
