#include "ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

extern char **environ;

namespace
{

double secondsOf(const timeval &time)
{
    return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
}

} // namespace

ProcessCost runProcess(const std::vector<std::string> &command)
{
    std::vector<char *> arguments;
    for (const std::string &argument : command)
        arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

    ProcessCost cost;
    pid_t child = 0;
    const auto start = std::chrono::steady_clock::now();
    const bool isStarted = posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage = {};
    if (!isStarted || wait4(child, &status, 0, &usage) != child)
        return cost;
    cost.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    cost.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    cost.processorSeconds = secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
    cost.peakBytes = double(usage.ru_maxrss) * 1024;
    return cost;
}
