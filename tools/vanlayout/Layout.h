#ifndef VANLAYOUT_LAYOUT_H
#define VANLAYOUT_LAYOUT_H

#include "FileType.h"
#include "import/DataProvider.h"
#include "import/ErrorManager.h"
#include "import/ReadReport.h"

#include <QString>

#include <memory>

/// What was read of one file, or why there is no answer.
struct Layout {
    QString file; ///< as it was asked for
    const FileType *type = nullptr;
    std::unique_ptr<TDataImport> importer; ///< opened, where there is an answer
    TVpDataProvider provider;              ///< filled from the importer
    QString problem;                       ///< one line that says what is wrong; empty where there is an answer
    QString incomplete;                    ///< what ended the reading in front of the end of the file; mostly empty
    std::unique_ptr<VpErrorManager> error; ///< the error of the library in which reading ended, if it did
};

/// Walks the whole road for one file: picks the importer (by content where \a type is null), opens it, fills a
/// provider. Losses and changes are reported to \a report, if there is one; it must outlive the call.
Layout readLayout(const QString &file, const FileType *type, ReadReport *report = nullptr);

/// Frees what the importer and the provider of a layout have made, which then has no fields. A layout that is not
/// released keeps it to the end of the process.
void releaseContents(Layout &layout);

/// One value label of a field.
struct ValueLabel {
    QStringRef code;
    QStringRef label;
};

/// The value label text of a field, cut at each tab, and each entry at its first blank. Refers to \a text.
QVector<ValueLabel> cutValueLabels(const QString &text);

#endif
