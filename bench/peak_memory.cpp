// Runs a command and prints the most memory that it had resident, in KiB.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const pid_t child = fork();
  if (child == 0) {
    execvp(argv[1], argv + 1);
    _exit(127);
  }
  int status = 0;
  rusage usage = {};
  if (child < 0 || wait4(child, &status, 0, &usage) != child) return 2;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return 1;
  std::printf("%ld\n", usage.ru_maxrss);
  return 0;
}
