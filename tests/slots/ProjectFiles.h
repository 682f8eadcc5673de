#pragma once

#include <string>
#include <vector>

namespace SlotsTest {

// The whole file; a failed test when it can't be read.
std::string contentOf(const std::string& path);

// What all headers and sources say that applications are compiled against, one text per file. The
// in-memory registry is left out: behind its plain functions no order shows.
std::vector<std::string> librarySources();

}  // namespace SlotsTest
