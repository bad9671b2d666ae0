#ifndef VANLAYOUT_LAYOUT_H
#define VANLAYOUT_LAYOUT_H

#include "FileType.h"
#include "cspro/DecimalQuestion.h"
#include "import/DataProvider.h"
#include "import/ErrorManager.h"
#include "import/ReadReport.h"

#include <QString>

#include <memory>
#include <string>

/// The fields of one file, or the reason why there are none.
struct Layout {
    QString file; ///< as given in the call
    const FileType *type = nullptr;
    std::unique_ptr<TDataImport> importer; ///< opened, unless there is a problem
    TVpDataProvider provider;              ///< filled from the importer
    QString problem;                       ///< the problem on one line; empty on success
    QString incomplete;                    ///< the cause that ended reading before the end of the file; usually empty
    std::unique_ptr<VpErrorManager> error; ///< the error of the library that ended reading, if any
};

/// Answers the question about decimal codes by "yes" or "no"; empty for "ask", which leaves the answer to the library
/// and its dialog.
DecimalAnswerFunction decimalAnswer(const std::string &decimals);

/// Reads one file: creates the importer (by content if \a type is null), opens it and fills a provider. \a decimals
/// answers the question about decimal codes. Losses and changes are reported to \a report, unless it is null; it must
/// exist until this function returns.
Layout readLayout(const QString &file, const FileType *type, const DecimalAnswerFunction &decimals, ReadReport *report);

/// Frees what the importer and the provider of a layout have made; the layout then has no fields. Without this call
/// they live until the end of the process.
void releaseContents(Layout &layout);

/// One value label of a field.
struct ValueLabel {
    QStringView code;
    QStringView label;
};

/// Splits the value label text of a field at each tab, and each entry at its first blank. The result refers to \a text.
QVector<ValueLabel> cutValueLabels(const QString &text);

#endif
