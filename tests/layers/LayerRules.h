#pragma once

#include <string>
#include <vector>

namespace LayersTest {

struct SourceFile {
  std::string path;  // from the project's root, with slashes
  std::string content;
};

// What is wrong with the files, one line each: "path:line: what", the line where there is one.
//
// - A folder includes only the folders below it (the table is in LayerRules.cpp), and everything of
//   the project's by its path from the root.
// - In the application, one file alone knows the in-memory registry.
// - Only platform/registry/ tests for macOS or includes its frameworks.
// - A header is included once, by #pragma once.
// - A product file has at most 500 lines.
std::vector<std::string> violationsIn(const std::vector<SourceFile>& files);

}  // namespace LayersTest
