#pragma once

#include <functional>
#include <string>
#include <utility>

#include "model/RAIDMember.h"

namespace ModelTest {

// A member that has no registry entry: its state is what a test says, and it tells when it is
// refreshed and when it ends.
class StubMember : public RAIDMonitoring::RAIDMember {
 public:
  using Hook = std::function<void(const StubMember&)>;

  explicit StubMember(std::string uuid,
                      RAIDMonitoring::MemberState state = RAIDMonitoring::MemberOnline) {
    _uuid = std::move(uuid);
    _state = state;
  }
  ~StubMember() override {
    if (_onEnd) _onEnd(*this);
  }

  void refresh() override {
    if (_onRefresh) _onRefresh(*this);
  }

  void setState(RAIDMonitoring::MemberState state) { _state = state; }
  void onRefresh(Hook hook) { _onRefresh = std::move(hook); }
  void onEnd(Hook hook) { _onEnd = std::move(hook); }

 private:
  Hook _onRefresh;
  Hook _onEnd;
};

}  // namespace ModelTest
