#include "ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <sstream>

extern char **environ;

namespace
{

double secondsOf(const timeval &time)
{
    return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
}

ProcessCost runHere(const std::vector<std::string> &command)
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

// Each request is a line with the arguments of a command, separated by tabs. Each response is the bytes of a Cost.
[[noreturn]] void serve(int requests, int answers)
{
    std::FILE *lines = fdopen(requests, "r");
    char *line = nullptr;
    size_t room = 0;
    ssize_t size = 0;
    while ((size = getline(&line, &room, lines)) > 0) {
        std::istringstream parts(std::string(line, size_t(size) - 1));
        std::vector<std::string> command;
        for (std::string part; std::getline(parts, part, '\t');)
            command.push_back(part);
        const ProcessCost cost = runHere(command);
        if (write(answers, &cost, sizeof cost) != ssize_t(sizeof cost))
            break;
    }
    _exit(0);
}

} // namespace

ProcessRunner::ProcessRunner()
{
    int toServer[2];
    int fromServer[2];
    if (pipe2(toServer, O_CLOEXEC) != 0 || pipe2(fromServer, O_CLOEXEC) != 0)
        return;
    if (fork() == 0) {
        close(toServer[1]);
        close(fromServer[0]);
        serve(toServer[0], fromServer[1]);
    }
    close(toServer[0]);
    close(fromServer[1]);
    requests = toServer[1];
    answers = fromServer[0];
}

ProcessRunner::~ProcessRunner()
{
    close(requests);
    close(answers);
    wait(nullptr);
}

ProcessCost ProcessRunner::run(const std::vector<std::string> &command)
{
    std::string line;
    for (const std::string &part : command)
        line += part + '\t';
    line += '\n';
    ProcessCost cost;
    if (write(requests, line.data(), line.size()) != ssize_t(line.size())
        || read(answers, &cost, sizeof cost) != ssize_t(sizeof cost))
        return ProcessCost();
    return cost;
}
