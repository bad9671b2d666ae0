#ifndef LAYOUT_WRITE_SEARCHCSV_H
#define LAYOUT_WRITE_SEARCHCSV_H

#include "search/Search.h"
#include "search/SharedSets.h"
#include "vanlayout_export.h"

#include <QString>
#include <QVector>

class QIODevice;

namespace vanlayout
{

/// The code or range of a value of a hit, and its label: "3 Hindu", "10 to 19 Other", "98" without a label.
VANLAYOUT_EXPORT QString describeSearched(const SearchedValue &value);

/// Writes the hits of several files as one CSV file (RFC 4180, UTF-8, CR LF) with one line per hit: the columns
/// `file,level,record,item,where,language,text,label,values`. The values are separated by "; ".
class VANLAYOUT_EXPORT SearchCsv
{
public:
    /// \a target is open for writing and must outlive this object. Writes the header line.
    explicit SearchCsv(QIODevice &target);
    void write(const QString &file, const QVector<SearchHit> &hits);

private:
    QIODevice &device;
};

/// Writes lists of values as a CSV file with one line per use: the columns `id,values,file,level,record,item,valueSet`,
/// where `values` is the number of values.
VANLAYOUT_EXPORT void writeSharedSetsCsv(const QVector<SharedSet> &sets, QIODevice &device);

} // namespace vanlayout

#endif
