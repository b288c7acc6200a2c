#include "cli/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace pokermath::cli {
namespace {

std::string ReadToEnd(int fd) {
  std::string text;
  char buffer[4096];
  for (;;) {
    const ssize_t bytes = read(fd, buffer, sizeof buffer);
    if (bytes > 0) text.append(buffer, static_cast<std::size_t>(bytes));
    if (bytes == 0 || (bytes < 0 && errno != EINTR)) return text;
  }
}

int WaitFor(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

int Spawn(std::span<const std::string> words, int out, bool errors, pid_t& process) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
  if (!errors) {
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  const int error =
      posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

}  // namespace

EndedProcess RunProcess(std::span<const std::string> words, bool errors) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {.error = errno};
  pid_t process = 0;
  EndedProcess ended{.error = Spawn(words, ends[1], errors, process)};
  close(ends[1]);
  if (ended.error == 0) {
    ended.out = ReadToEnd(ends[0]);
    ended.exit_code = WaitFor(process);
  }
  close(ends[0]);
  return ended;
}

}  // namespace pokermath::cli
