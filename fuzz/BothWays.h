#ifndef BOTHWAYS_H
#define BOTHWAYS_H

#include "FuzzedFile.h"
#include "import/ReadReport.h"
#include "support/ImportedText.h"

#include <QtGlobal>

// Reads a file in both ways, which must have equal results. One of them has a report, which must not change the result.
// `tune` is called with each importer before it reads.
template <typename Importer, typename Tune> void readInBothWays(const uint8_t *data, size_t size, Tune tune)
{
    static FuzzedFile file;
    const QString name = file.holding(data, size);
    QString texts[2];
    for (const bool isBuffered : { false, true }) {
        Importer importer(name);
        importer.setReadingBuffered(isBuffered);
        ReadReport report;
        importer.setReadReport(isBuffered ? &report : nullptr);
        tune(importer);
        texts[isBuffered] = importedText(importer);
    }
    if (texts[0] != texts[1])
        qFatal("the two ways of reading differ");
}

#endif // BOTHWAYS_H
