#include "tests/support/RegistryFixture.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "platform/pelago/Event.h"
#include "platform/pelago/Object.h"
#include "platform/registry/RegistryReferences.h"

namespace TestSupport {
namespace {

// Settles early, to see whether the accounts are found out of balance.
class Settlement : public RegistryFixture {
 protected:
  unsigned hold() { return MemoryRegistry::handle(MemoryRegistry::root()); }
};

TEST_F(Settlement, FindsAReferenceThatNobodyDeclared) {
  const unsigned handle = hold();
  EXPECT_NONFATAL_FAILURE(RegistryFixture::TearDown(), "1 references held on entry");
  IOObjectRelease(handle);
}

TEST_F(Settlement, FindsADeclaredReferenceThatIsNotHeld) {
  const unsigned handle = hold();
  expectKept(MemoryRegistry::root(), 2);
  EXPECT_NONFATAL_FAILURE(RegistryFixture::TearDown(), "references held on entry");
  IOObjectRetain(handle);
}

TEST_F(Settlement, AddsUpWhatIsDeclared) {
  hold();
  hold();
  expectKept(MemoryRegistry::root(), 1);
  expectKept(MemoryRegistry::root(), 1);
}

TEST_F(Settlement, FindsAnIteratorThatNobodyDeclared) {
  const unsigned root = hold();
  io_iterator_t iterator = 0;
  IORegistryEntryCreateIterator(root, "IOService", 1, &iterator);
  IOObjectRelease(root);
  EXPECT_NONFATAL_FAILURE(RegistryFixture::TearDown(), "iterators held");
  expectKeptIterators(1);
}

TEST_F(Settlement, FindsAValueThatNobodyDeclared) {
  const auto text = RAIDMonitoring::CFReference<CFStringRef>::adopt(
      CFStringCreateWithCString(kCFAllocatorDefault, "text", kCFStringEncodingUTF8));
  EXPECT_NONFATAL_FAILURE(RegistryFixture::TearDown(), "values held");
}

TEST_F(Settlement, FindsAnEventThatNobodyDeclared) {
  Pelago::Object receiver;
  Pelago::Application::PostEvent(&receiver, new Pelago::Event(1, nullptr));
  EXPECT_NONFATAL_FAILURE(RegistryFixture::TearDown(), "events queued");
}

TEST_F(Settlement, KeepsWhatIsLoggedAndPrinted) {
  Pelago::Logger::Debug("Category", "number %d", 5);
  std::printf("line %d\n", 1);
  ASSERT_EQ(1U, log().lines().size());
  EXPECT_EQ(debug("number 5", "Category"), log().lines()[0]);
  EXPECT_EQ("line 1\n", output());
}

// Posts another event from every event.
class Poster : public Pelago::Object {
 public:
  void event(Pelago::Event* /*event*/) override {
    ++received;
    Pelago::Application::PostEvent(this, new Pelago::Event(1, nullptr));
  }
  int received = 0;
};

TEST_F(Settlement, ATurnDeliversNothingThatIsPostedMeanwhile) {
  Poster poster;
  poster.event(nullptr);
  pump().turn();
  EXPECT_EQ(2, poster.received);
  pump().turns(3);
  EXPECT_EQ(5, poster.received);
}

}  // namespace
}  // namespace TestSupport
