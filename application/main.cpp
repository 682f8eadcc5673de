#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <string_view>

#include "application/CommandLine.h"
#include "application/StandardError.h"
#include "application/StandardOutput.h"
#include "application/check/Severity.h"

namespace Program {
namespace {

ExitStatus fail(const char* reason) {
  printError(std::string("raidmonitor: ") + reason);
  return Failure;
}

// Whoever runs a plugin takes 1 for a warning, also when there was no memory to learn what is
// asked.
ExitStatus failWithoutMemory(int argc, const char* const* argv, StandardOutput& output) {
  if (argc < 2 || std::string_view(argv[1]) != "check") {
    std::fputs("raidmonitor: out of memory\n", stderr);  // which takes none
    return Failure;
  }
  output.write("UNKNOWN - out of memory\n");
  return static_cast<ExitStatus>(pluginStatusOf(Severity::Unknown));
}

ExitStatus run(int argc, const char* const* argv, StandardOutput& output) {
  try {
    return runCommandLine(argc, argv, output);
  } catch (const std::bad_alloc&) {
    return failWithoutMemory(argc, argv, output);
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}

}  // namespace
}  // namespace Program

int main(int argc, char** argv) {
  using namespace Program;
  StandardOutput output;
  const ExitStatus status = run(argc, argv, output);
  output.close();
  if (status == Success && output.failed()) {
    return fail(("standard output: " + output.reason()).c_str());
  }
  return status;
}
