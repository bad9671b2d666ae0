// A CSPro 8 JSON dictionary, from the file to a filled provider.

#include "FuzzedFile.h"
#include "SameWithReport.h"
#include "cspro/CSProJsonDataImport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FuzzedFile file;
    const QString name = file.holding(data, size);
    requireSameWithReport(TCSProJsonDataImport(name), TCSProJsonDataImport(name));
    return 0;
}
