#ifndef BENCH_CHILDPROCESS_H
#define BENCH_CHILDPROCESS_H

#include <string>
#include <vector>

/// The cost of one run of a program.
struct ProcessCost {
    int status = -1;             ///< exit status; -1 if a signal ended the program
    double seconds = 0;          ///< wall time from start to end
    double processorSeconds = 0; ///< sum of user and system time
    double peakBytes = 0;        ///< max resident memory
};

/// Starts programs from a small separate process, because the system counts the memory of the starting process as that
/// of the program.
///
/// An object must be made before anything else, while this process is small.
class ProcessRunner
{
public:
    ProcessRunner();
    ~ProcessRunner();
    ProcessRunner(const ProcessRunner &) = delete;
    ProcessRunner &operator=(const ProcessRunner &) = delete;

    /// Runs a program without its standard output and waits for its end. No argument may contain a line feed or a tab.
    ProcessCost run(const std::vector<std::string> &command);

private:
    int requests = -1;
    int answers = -1;
};

#endif
