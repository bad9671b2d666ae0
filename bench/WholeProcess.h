#ifndef BENCH_WHOLEPROCESS_H
#define BENCH_WHOLEPROCESS_H

#include "ChildProcess.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

/// Measures the wall time of a program, and after each run that of another one for comparison. The counters are max
/// memory, processor time, the median of the other program, and the ratio of both.
void measureProcesses(benchmark::State &state, ProcessRunner &runner, const std::vector<std::string> &command,
                      const std::vector<std::string> &other, int expectedStatus = 0);

#endif
