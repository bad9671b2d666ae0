#ifndef LAYOUT_WRITE_CODEBOOK_H
#define LAYOUT_WRITE_CODEBOOK_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>
#include <QVector>

class QIODevice;

namespace vanlayout
{

/// Settings for writeCodebook() and writeCodebookIndex().
struct VANLAYOUT_EXPORT CodebookOptions {
    /// Code of the language in which the page opens, compared case-insensitively; the primary one if it is empty or the
    /// layout does not have it.
    QString language;
    bool hasProblems = true; ///< whether a codebook shows the problems of the file; the index never does
};

/// Writes the codebook of a layout: one self-contained HTML page in UTF-8 that loads nothing. Texts of the layout are
/// shown as plain text, even if they contain HTML.
///
/// \a layout must have been read (`isRead()`). The page holds each list of values once, however many items have it.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeCodebook(const Layout &layout, QIODevice &device, const CodebookOptions &options = {});

/// An item in the index of several codebooks.
struct VANLAYOUT_EXPORT CodebookIndexItem {
    QString name;
    Labels labels;
    QStringList aliases;
    QVector<int> lists; ///< indexes of its value labels in `CodebookIndexEntry::lists`, 0-based
};

/// One codebook in the index of several: its facts and the texts that are searched. It does not refer to the layout.
struct VANLAYOUT_EXPORT CodebookIndexEntry {
    QString page; ///< file name of the page, in the directory of the index
    QString file; ///< name of the file that the layout was read from, without directories; empty for standard input
    QString name; ///< name of the layout
    Labels labels;
    QString format;                   ///< kind of the file for people, such as "SPSS file"
    int records = 0;                  ///< number of record types; 0 for a statistical file
    QVector<CodebookIndexItem> items; ///< in the order of the layout
    QStringList lists; ///< value labels of a value set in all languages, separated by line feeds; each list once
};

/// The entry for the codebook of \a layout that was written as \a page.
VANLAYOUT_EXPORT CodebookIndexEntry indexEntryOf(const Layout &layout, const QString &page);

/// Writes the index of several codebooks: one HTML page with a link to each and a search over the names, aliases,
/// labels and value labels of all their items, in every language. Labels are shown in the language of \a options.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason.
VANLAYOUT_EXPORT bool writeCodebookIndex(const QVector<CodebookIndexEntry> &entries, QIODevice &device,
                                         const CodebookOptions &options = {});

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::CodebookIndexItem, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::CodebookIndexEntry, Q_MOVABLE_TYPE);

#endif
