#pragma once

#include <cerrno>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

/// Does something in a process of its own; whether it did, and ended in good order.
inline bool inOtherProcess(const std::function<bool()>& act) {
  const pid_t child = fork();
  if (child == 0) _exit(act() ? 0 : 1);
  int status = -1;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
