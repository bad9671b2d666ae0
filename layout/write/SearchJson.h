#ifndef LAYOUT_WRITE_SEARCHJSON_H
#define LAYOUT_WRITE_SEARCHJSON_H

#include "search/Search.h"
#include "search/SharedSets.h"
#include "vanlayout_export.h"

#include <QString>
#include <QVector>

class QIODevice;

namespace vanlayout
{

/// Writes the hits of one file, each as a JSON object on a line of its own, in UTF-8. `docs/find.md` describes the
/// keys; all are always there.
///
/// \a device must be open for writing. Returns false if it did not accept all bytes; its error string gives the reason.
VANLAYOUT_EXPORT bool writeSearchJson(const QString &file, const QVector<SearchHit> &hits, QIODevice &device);

/// Likewise for lists of values, with labels in the language \a language; the primary one if it is empty.
VANLAYOUT_EXPORT bool writeSharedSetsJson(const QVector<SharedSet> &sets, const QString &language, QIODevice &device);

} // namespace vanlayout

#endif
