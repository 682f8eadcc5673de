#include "tests/application/support/Tool.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <thread>

#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

// In the child.
[[noreturn]] void become(const ToolCommand& command, int in, int out, int err) {
  std::vector<char*> argv;
  for (const std::string& argument : command)
    argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  dup2(in, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  execvp(argv[0], argv.data());
  _exit(127);
}

int opened(const std::string& file, int flags) {
  const int descriptor = open(file.c_str(), flags | O_CLOEXEC, 0600);
  if (descriptor == -1) throw std::runtime_error("cannot open " + file);
  return descriptor;
}

pid_t start(const ToolCommand& command, const std::string& in, const std::string& out,
            const std::string& err) {
  const int input = opened(in, O_RDONLY);
  const int output = opened(out, O_WRONLY | O_CREAT | O_APPEND);
  const int errors = opened(err, O_WRONLY | O_CREAT | O_APPEND);
  const pid_t process = fork();
  if (process == 0) become(command, input, output, errors);
  close(input);
  close(output);
  close(errors);
  if (process == -1) throw std::runtime_error("cannot start " + command.front());
  return process;
}

}  // namespace

Result runTool(const ToolCommand& command, const std::string& input) {
  const TemporaryFolder folder;
  const pid_t process =
      start(command, folder.write("in", input), folder.file("out"), folder.file("err"));
  int status = 0;
  waitpid(process, &status, 0);
  Result result;
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  result.out = contentOf(folder.file("out"));
  result.err = contentOf(folder.file("err"));
  return result;
}

RunningTool::RunningTool(const ToolCommand& command, const std::string& log)
    : _process(start(command, "/dev/null", log, log)) {}

RunningTool::~RunningTool() {
  if (_process == -1) return;
  kill(_process, SIGTERM);
  waitpid(_process, nullptr, 0);
}

bool RunningTool::hasEnded() {
  if (_process != -1 && waitpid(_process, nullptr, WNOHANG) == _process) _process = -1;
  return _process == -1;
}

bool waitUntil(const std::function<bool()>& isSo, std::chrono::seconds deadline) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  while (!isSo()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return true;
}

int freePort() {
  const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  const bool done = bind(probe, reinterpret_cast<const sockaddr*>(&address), size) == 0 &&
                    getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) == 0;
  close(probe);
  if (!done) throw std::runtime_error("no port is free");
  return ntohs(address.sin_port);
}

}  // namespace ProgramTest
