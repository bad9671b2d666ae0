// A Stata file in both ways of reading.

#include "BothWays.h"
#include "statistical/STATADataImport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    readInBothWays<TSTATADataImport>(data, size, [](TSTATADataImport &importer) { importer.setErrorStream(nullptr); });
    return 0;
}
