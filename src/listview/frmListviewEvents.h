// What happens to the recordset of the list window.
#pragma once

#include <QObject>
#include <QTimer>

#include "data/Recordset.h"

namespace kel {

/// What has happened since the last time.
struct RecordsetNews {
  bool moved = false;    // another record is the current one
  bool changed = false;  // a record has other values
  bool rows = false;     // other rows, or in another order
  bool fetched = false;  // more rows have come, or it is known that there are no more

  bool Any() const { return moved || changed || rows || fetched; }
};

/// Tells of a recordset once, in the next pass of the event loop, however much has happened to it.
class RecordsetFollower : public QObject, private RecordsetEvents {
  Q_OBJECT

 public:
  RecordsetFollower();
  ~RecordsetFollower() override;
  RecordsetFollower(const RecordsetFollower&) = delete;
  RecordsetFollower& operator=(const RecordsetFollower&) = delete;

  /// Follows this one from now on, or none. It outlives this or is given up before.
  void Follow(Recordset* records);
  /// Tells now what there is to be told.
  void TellNow();

 signals:
  void Happened(kel::RecordsetNews news);

 private:
  void MoveComplete() override { Note(&RecordsetNews::moved); }
  void RecordChangeComplete() override { Note(&RecordsetNews::changed); }
  void RecordsetChangeComplete() override { Note(&RecordsetNews::rows); }
  void FetchProgress() override { Note(&RecordsetNews::fetched); }
  void Note(bool RecordsetNews::*what);

  Recordset* followed_ = nullptr;
  RecordsetNews news_;
  QTimer soon_;
};

}  // namespace kel
