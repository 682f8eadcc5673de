#include "tests/slots/ProjectFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace SlotsTest {

std::string contentOf(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> librarySources() {
  namespace fs = std::filesystem;
  std::vector<std::string> sources;
  for (const char* folder : {"monitor", "thunderbolt", "model", "platform/pelago"}) {
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(PROJECT_ROOT) / folder)) {
      const fs::path extension = entry.path().extension();
      if (extension == ".h" || extension == ".cpp") sources.push_back(contentOf(entry.path()));
    }
  }
  return sources;
}

}  // namespace SlotsTest
