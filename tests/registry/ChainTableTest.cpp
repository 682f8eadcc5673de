#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "platform/registry/memory/ClassChains.h"

namespace {

using MemoryRegistry::classChains;
using MemoryRegistry::recordedChain;

TEST(ClassChains, EveryLineOfTheTableIsFoundByItsClass) {
  ASSERT_EQ(1U, MemoryRegistry::classChainsCount);
  EXPECT_EQ("class-chains.tsv", classChains[0].name);
  std::string text;
  for (std::size_t piece = 0; piece < classChains[0].pieceCount; ++piece) {
    text += classChains[0].pieces[piece];
  }
  std::istringstream lines(text);
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    const std::size_t tab = line.find('\t');
    ASSERT_NE(std::string::npos, tab) << line;
    EXPECT_EQ(line.substr(tab + 1), recordedChain(line.substr(0, tab)));
  }
  EXPECT_LT(1000U, count);
}

TEST(ClassChains, AClassThatIsNotInTheTableHasNone) {
  for (const char* name : {"", "A", "zzzz", "IOMedi", "IOMediaX", "IOMedia\t", "\n"}) {
    EXPECT_EQ("", recordedChain(name)) << name;
  }
}

}  // namespace
