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

  const std::string& uuid() const { return _uuid; }
  MemberState state() const { return _state; }
  RAIDVolume* volume() const { return _volume; }

 protected:
  RAIDMember();

  std::string _uuid;
  MemberState _state = MemberUnknown;
  RAIDVolume* _volume = nullptr;
};

}  // namespace RAIDMonitoring
