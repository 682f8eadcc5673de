#pragma once

#include <string>

#include "model/AppleRAIDMember.h"
#include "tests/model/ModelFixture.h"

namespace ModelTest {

using MemberReference = Pelago::Reference<RAIDMonitoring::AppleRAIDMember>;

// With a volume whose set is not in the registry, for members of the test's own.
class MemberFixture : public ModelFixture {
 protected:
  MemberFixture() : volume(makeVolume("NO SUCH SET")) {
    expectLookUps(1);
    log().clear();
  }

  MemberReference makeMember(const std::string& uuid) {
    return MemberReference(new RAIDMonitoring::AppleRAIDMember(volume.get(), uuid));
  }

  VolumeReference volume;
};

}  // namespace ModelTest
