#ifndef BENCH_WHOLEPROCESS_H
#define BENCH_WHOLEPROCESS_H

#include "ChildProcess.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

/// Measures a program by its wall clock, and right behind each run one of another program that does the least, or the
/// same by other means. Counters: most memory, processor time, the other's median, and the ratio of both.
void measureProcesses(benchmark::State &state, ProcessRunner &runner, const std::vector<std::string> &command,
                      const std::vector<std::string> &other, int expectedStatus = 0);

#endif
