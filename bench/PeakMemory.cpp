// Runs a program, its output thrown away, and prints the most memory that it had resident. Small
// itself, because what it has before the other begins counts too.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

int main(int count, char** arguments) {
  if (count < 2) return 2;
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    execv(arguments[1], arguments + 1);
    _exit(127);
  }
  int status = 0;
  rusage usage = {};
  if (child < 0 || wait4(child, &status, 0, &usage) < 0 || status != 0) return 1;
  std::printf("%ld kB resident at most\n", usage.ru_maxrss);
  return 0;
}
