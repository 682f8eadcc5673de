#include <cstdio>
#include <exception>
#include <new>

#include "application/CommandLine.h"
#include "application/StandardOutput.h"

namespace Program {
namespace {

ExitStatus fail(const char* reason) {
  std::fprintf(stderr, "raidmonitor: %s\n", reason);
  return Failure;
}

ExitStatus run(int argc, const char* const* argv, StandardOutput& output) {
  try {
    return runCommandLine(argc, argv, output);
  } catch (const std::bad_alloc&) {
    return fail("out of memory");
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
