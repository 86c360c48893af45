// Mail through "Outlook.Application".
#include "export/automation_office.h"
#include "export/late_bound.h"

namespace kel {
namespace {

constexpr int kMailItem = 0;
constexpr int kByValue = 1;  // the message holds the file itself

// The user's own session. The program is never quit: it is the one that the user may have open.
class MailSession {
 public:
  explicit MailSession(const LateBound& outlook)
      : name_space_(outlook.Call("GetNamespace", {"MAPI"})) {
    name_space_.Call("Logon");
    logged_on_ = true;
  }
  ~MailSession() {
    try {
      LogOff();
    } catch (...) {
      return;  // what failed before is what the caller has to hear of
    }
  }
  MailSession(const MailSession&) = delete;
  MailSession& operator=(const MailSession&) = delete;

  void LogOff() {
    if (!logged_on_) return;
    logged_on_ = false;
    name_space_.Call("Logoff");
  }

 private:
  LateBound name_space_;
  bool logged_on_ = false;
};

}  // namespace

void AutomationOffice::SendMail(const std::filesystem::path& file, const AttachmentNames& names) {
  const LateBound outlook(programs_->CreateObject("Outlook.Application"));
  MailSession session(outlook);
  const LateBound message(outlook.Call("CreateItem", {kMailItem}));
  message.Put("Subject", names.subject);
  message.Get("Attachments")
      .Call("Add",
            {PathText(std::filesystem::absolute(file)), kByValue, Value::Missing(), names.file});
  message.Call("Display");
  session.LogOff();
}

}  // namespace kel
