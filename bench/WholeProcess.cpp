#include "WholeProcess.h"

#include <algorithm>

namespace
{

double median(std::vector<double> values)
{
    const auto middle = values.begin() + long(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

void measureProcesses(benchmark::State &state, ProcessRunner &runner, const std::vector<std::string> &command,
                      const std::vector<std::string> &other, int expectedStatus)
{
    constexpr double milliseconds = 1000;
    double peakBytes = 0;
    double processorSeconds = 0;
    std::vector<double> seconds;
    std::vector<double> otherSeconds;
    for (auto round : state) {
        const ProcessCost cost = runner.run(command);
        const ProcessCost otherCost = runner.run(other);
        if (cost.status != expectedStatus || otherCost.status != 0) {
            state.SkipWithError("a process failed");
            return;
        }
        state.SetIterationTime(cost.seconds);
        peakBytes = std::max(peakBytes, cost.peakBytes);
        processorSeconds += cost.processorSeconds;
        seconds.push_back(cost.seconds);
        otherSeconds.push_back(otherCost.seconds);
    }
    state.counters["peakMiB"] = peakBytes / (1 << 20);
    state.counters["cpu_ms"] = processorSeconds * milliseconds / double(state.iterations());
    state.counters["median_ms"] = median(seconds) * milliseconds;
    state.counters["other_ms"] = median(otherSeconds) * milliseconds;
    state.counters["ratio"] = median(seconds) / median(otherSeconds);
}
