#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/layers/LayerRules.h"

namespace LayersTest {
namespace {

namespace fs = std::filesystem;

bool isSource(const fs::path& path) {
  const fs::path extension = path.extension();
  return extension == ".h" || extension == ".cpp" || extension == ".mm";
}

std::vector<SourceFile> sourcesIn(const std::string& folder) {
  const fs::path root = PROJECT_ROOT;
  std::vector<SourceFile> files;
  for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
    if (!isSource(entry.path())) continue;
    std::ifstream file(entry.path());
    files.push_back({entry.path().lexically_relative(root).generic_string(),
                     {std::istreambuf_iterator<char>(file), {}}});
  }
  std::sort(files.begin(), files.end(),
            [](const SourceFile& a, const SourceFile& b) { return a.path < b.path; });
  return files;
}

TEST(ProjectLayers, TheWholeProjectKeepsTheRules) {
  std::vector<SourceFile> files = sourcesIn("bench");
  for (const char* folder :
       {"monitor", "thunderbolt", "model", "platform", "application", "tests"}) {
    const std::vector<SourceFile> more = sourcesIn(folder);
    EXPECT_FALSE(more.empty()) << folder << " has no sources: has it moved?";
    files.insert(files.end(), more.begin(), more.end());
  }
  std::string violations;
  for (const std::string& violation : violationsIn(files))
    violations += violation + "\n";
  EXPECT_EQ("", violations);
}

}  // namespace
}  // namespace LayersTest
