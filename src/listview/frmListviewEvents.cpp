#include "listview/frmListviewEvents.h"

#include <utility>

namespace kel {

RecordsetFollower::RecordsetFollower() {
  soon_.setSingleShot(true);
  connect(&soon_, &QTimer::timeout, this, &RecordsetFollower::TellNow);
}

RecordsetFollower::~RecordsetFollower() { Follow(nullptr); }

void RecordsetFollower::Follow(Recordset* records) {
  if (followed_ != nullptr) followed_->RemoveEvents(*this);
  followed_ = records;
  if (followed_ != nullptr) followed_->AddEvents(*this);
}

void RecordsetFollower::Note(bool RecordsetNews::*what) {
  if (!news_.Any()) soon_.start(0);
  news_.*what = true;
}

void RecordsetFollower::TellNow() {
  if (news_.Any()) emit Happened(std::exchange(news_, {}));
}

}  // namespace kel
