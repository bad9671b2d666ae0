// An SPSS file in both ways of reading.

#include "BothWays.h"
#include "statistical/SPSSDataImport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    readInBothWays<TSPSSDataImport>(data, size, [](TSPSSDataImport &) {});
    return 0;
}
