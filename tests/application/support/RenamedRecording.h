#pragma once

#include <string>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {

inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

// An archive in `folder`, of an enclosure with two bays, whose one volume, a mirror, bears the name
// and has lost the disk in bay 2. The name is XML.
inline std::string degradedVolumeNamed(const TemporaryFolder& folder, const std::string& xmlName) {
  const std::string archive = contentOf(recording("two-bay-mirror-degrades/5400.plist"));
  return folder.write("archive.plist", replaced(archive, "<string>Projects</string>",
                                                "<string>" + xmlName + "</string>"));
}

}  // namespace ProgramTest
