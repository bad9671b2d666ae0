#ifndef LAYOUT_LAYOUTFILES_H
#define LAYOUT_LAYOUTFILES_H

#include "support/Corpus.h"

#include <QTest>

/// Adds a row with the paths of these files of a directory.
inline void addFiles(const char *row, const QString &directory, const QStringList &names)
{
    QStringList paths;
    for (const QFileInfo &file : QDir(directory).entryInfoList(names, QDir::Files))
        paths.append(file.filePath());
    QTest::newRow(row) << paths;
}

/// Adds the column of the paths, and rows for the files of all kinds; those of the corpus are empty if it is absent.
inline void addLayoutFiles()
{
    QTest::addColumn<QStringList>("paths");
    addFiles("examples", VAN_EXAMPLES, { "*.dcf" });
    addFiles("dictionaries of other tests", VAN_TEST_DATA "/layout", { "*.dcf" });
    addFiles("several levels", VAN_TEST_DATA "/ddi", { "*.dcf" });
    addFiles("statistical files", VAN_MADE_DATA, { "*.sav", "*.por", "*.dta", "*.sas7bdat", "*.xpt" });
    for (const char *kind : { "cspro-text", "cspro-json", "spss", "stata" })
        QTest::newRow(kind) << corpusFiles(kind);
}

#endif
