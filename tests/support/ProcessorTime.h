#ifndef SUPPORT_PROCESSORTIME_H
#define SUPPORT_PROCESSORTIME_H

#include <algorithm>
#include <ctime>
#include <limits>
#include <string>

#include <sys/resource.h>

/// Processor time that this process has used since the object was made: a busy machine does not add to it.
class ProcessorTime
{
public:
    double seconds() const { return double(std::clock() - begin) / CLOCKS_PER_SEC; }

private:
    std::clock_t begin = std::clock();
};

/// Returns the processor time in seconds that this process, and the processes that it has waited for, have used so far.
inline double secondsComputed()
{
    double sum = 0;
    for (const auto who : { RUSAGE_SELF, RUSAGE_CHILDREN }) {
        rusage usage = {};
        getrusage(who, &usage);
        sum += double(usage.ru_utime.tv_sec) + double(usage.ru_utime.tv_usec) / 1e6;
    }
    return sum;
}

/// Compares the processor time of two actions. Each runs twice, in turn, and the quicker run counts.
class TimeRatio
{
public:
    template <typename Action, typename Control> TimeRatio(Action action, Control control)
    {
        for (int round = 0; round < 2; ++round) {
            ofAction = std::min(ofAction, timeOf(action));
            ofControl = std::min(ofControl, timeOf(control));
        }
    }

    /// Returns whether the action takes at most \a factor times as long as the control. Some hundredths of a second are
    /// ignored.
    bool isAtMost(double factor) const { return ofAction <= factor * ofControl + 0.05; }
    std::string inWords() const { return std::to_string(ofAction) + " s, control " + std::to_string(ofControl) + " s"; }

private:
    template <typename Action> static double timeOf(Action action)
    {
        const double begin = secondsComputed();
        action();
        return secondsComputed() - begin;
    }

    double ofAction = std::numeric_limits<double>::max();
    double ofControl = std::numeric_limits<double>::max();
};

#endif
