#ifndef LAYOUT_WRITE_CODEBOOK_H
#define LAYOUT_WRITE_CODEBOOK_H

#include "model/Layout.h"
#include "vanlayout_export.h"

#include <QString>
#include <QVector>

class QIODevice;

namespace vanlayout
{

/// How a codebook is written.
struct VANLAYOUT_EXPORT CodebookOptions {
    /// Code of the language that the page opens in, ignoring case; the primary one where it is empty or where
    /// the layout has no such language.
    QString language;
    bool hasProblems = true; ///< whether the page shows the problems of the file
};

/// Writes the codebook of a layout: one HTML page in UTF-8 that needs nothing beside it, and loads nothing. Texts of
/// the layout are text on the page whatever they hold.
///
/// \a layout was read (`isRead()`). The page holds each list of values once, however many items have it. Streams onto
/// \a device, which is open for writing. False if the device did not take all bytes; its error string says why.
VANLAYOUT_EXPORT bool writeCodebook(const Layout &layout, QIODevice &device, const CodebookOptions &options = {});

/// An item in the index of several codebooks.
struct VANLAYOUT_EXPORT CodebookIndexItem {
    QString name;
    Labels labels;
    QStringList aliases;
    QVector<int> lists; ///< places of its value labels in the lists of the entry
};

/// One codebook in the index of several: its facts, and the texts that the search goes by. The layout need not be kept.
struct VANLAYOUT_EXPORT CodebookIndexEntry {
    QString page; ///< file name of the page, in the directory of the index
    QString file; ///< name of the file that the layout was read from, without its folder; empty for standard input
    QString name; ///< name of the layout
    Labels labels;
    QString format;                   ///< the kind of file in words
    int records = 0;                  ///< record types; 0 for a statistical file
    QVector<CodebookIndexItem> items; ///< in the order of the layout
    QStringList lists;                ///< the value labels of each value set in all languages, parted by line feeds
};

/// The entry for the codebook of \a layout that was written as \a page.
VANLAYOUT_EXPORT CodebookIndexEntry indexEntryOf(const Layout &layout, const QString &page);

/// Writes the index of several codebooks: one HTML page with a link to each and a search over the names, aliases,
/// labels and value labels of all their items, in every language. Labels are shown in the language of \a options.
///
/// Streams onto \a device, which is open for writing. False if the device did not take all bytes.
VANLAYOUT_EXPORT bool writeCodebookIndex(const QVector<CodebookIndexEntry> &entries, QIODevice &device,
                                         const CodebookOptions &options = {});

} // namespace vanlayout

Q_DECLARE_TYPEINFO(vanlayout::CodebookIndexItem, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(vanlayout::CodebookIndexEntry, Q_MOVABLE_TYPE);

#endif
