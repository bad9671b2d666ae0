// A CSPro text dictionary, from the file to a filled provider. The first byte answers the question on decimal codes.

#include "FuzzedFile.h"
#include "SameWithReport.h"
#include "cspro/CSProDataImport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FuzzedFile file;
    if (size == 0)
        return 0;
    constexpr DecimalAnswer answers[]
        = { DecimalAnswer::yes, DecimalAnswer::yesToAll, DecimalAnswer::no, DecimalAnswer::noToAll };
    const DecimalAnswer answer = answers[data[0] % 4];
    // Dictionaries are seeds, so the byte is also part of the dictionary.
    const QString name = file.holding(data, size);
    TCSProDataImport importers[] = { TCSProDataImport(name), TCSProDataImport(name) };
    for (TCSProDataImport &importer : importers)
        importer.setDecimalAnswer([answer](const DecimalQuestion & /*question*/) { return answer; });
    requireSameWithReport(importers[0], importers[1]);
    return 0;
}
