#ifndef BENCH_CHILDPROCESS_H
#define BENCH_CHILDPROCESS_H

#include <string>
#include <vector>

/// What one run of a program cost.
struct ProcessCost {
    int status = -1;             ///< exit status; -1 where the program did not end by itself
    double seconds = 0;          ///< from start to end, on the wall clock
    double processorSeconds = 0; ///< user and system time
    double peakBytes = 0;        ///< most resident memory
};

/// Starts programs from a small process of its own: the system counts the memory of the starting process as the
/// program's.
///
/// Make it first of all, while this process is small.
class ProcessRunner
{
public:
    ProcessRunner();
    ~ProcessRunner();
    ProcessRunner(const ProcessRunner &) = delete;
    ProcessRunner &operator=(const ProcessRunner &) = delete;

    /// Runs a program with its standard output thrown away, and waits for it. No argument may hold a line feed.
    ProcessCost run(const std::vector<std::string> &command);

private:
    int requests = -1;
    int answers = -1;
};

#endif
