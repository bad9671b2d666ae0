#ifndef SUPPORT_PROCESSORTIME_H
#define SUPPORT_PROCESSORTIME_H

#include <ctime>

/// Processor time that this process has used since the object was made: a busy machine does not add to it.
class ProcessorTime
{
public:
    double seconds() const { return double(std::clock() - begin) / CLOCKS_PER_SEC; }

private:
    std::clock_t begin = std::clock();
};

#endif
