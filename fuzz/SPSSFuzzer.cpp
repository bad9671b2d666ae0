// A SPSS file in both ways of reading, which must tell the same.

#include "FuzzedFile.h"
#include "import/ReadReport.h"
#include "support/WholeRoad.h"
#include "statistical/SPSSDataImport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FuzzedFile file;
    const QString name = file.holding(data, size);
    QString told[2];
    for (const bool isBuffered : { false, true }) {
        TSPSSDataImport importer(name);
        importer.setReadingBuffered(isBuffered);
        ReadReport report;
        importer.setReadReport(isBuffered ? &report : nullptr); // which must not change a thing either

        told[isBuffered] = takeWholeRoad(importer);
    }
    if (told[0] != told[1])
        qFatal("the two ways of reading differ");
    return 0;
}
