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

/// Runs a program with its standard output thrown away, and waits for it.
ProcessCost runProcess(const std::vector<std::string> &command);

#endif
