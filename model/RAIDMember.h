#pragma once

#include <string>

#include "RAIDMonitoringExport.h"
#include "model/MemberState.h"
#include "platform/pelago/Object.h"

namespace RAIDMonitoring {

class RAIDVolume;

// One disk of a RAID set, of whatever kind.
//
// Ownership: the volume keeps one reference while the member is filed; the way back to the volume
//            keeps none.
// Thread:    the event thread only.
// Failure:   nothing here fails.
//
// The order of the virtual operations is part of the binary interface.
class RAIDMONITORING_EXPORT RAIDMember : public Pelago::Object {
 public:
  ~RAIDMember() override;

  // Reads the member anew. The base version does nothing.
  virtual void refresh();

  // By which the set knows the disk: it stays the same in whichever bay the disk is put.
  const std::string& uuid() const { return _uuid; }
  // What the last reading has found.
  MemberState state() const { return _state; }
  // The set that it is a member of. No reference is kept on it: a member that somebody holds longer
  // than its volume lives must not be asked.
  RAIDVolume* volume() const { return _volume; }

 protected:
  // A member of nothing, which has not been read.
  RAIDMember();

  // For the kinds of member to fill in: what the operations of these names answer.
  std::string _uuid;
  MemberState _state = MemberUnknown;
  RAIDVolume* _volume = nullptr;
};

}  // namespace RAIDMonitoring
