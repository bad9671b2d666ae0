#ifndef LAYOUT_LOAD_SASLINES_P_H
#define LAYOUT_LOAD_SASLINES_P_H

#include "load/LinePieces_p.h"
#include "load/Plan_p.h"

#include <QByteArray>

namespace vanlayout
{

/// How the data steps of a SAS program read the lines of the data file and find columns in them.
class SasLines
{
public:
    explicit SasLines(const LoadPlan &loadPlan);

    /// The beginning of names that the program makes for itself.
    const QByteArray &prefix() const { return p; }
    const LinePieces &divided() const { return division; }
    /// The variables that hold the line.
    const QVector<QByteArray> &pieces() const { return names; }

    /// The data set in WORK of a table.
    QByteArray dataSet(int table) const;

    /// The beginning of a step that reads all lines.
    QByteArray read() const;
    /// The end of such a step, to which read() links.
    QByteArray readLabel() const;

    // expressions
    QByteArray field(int start, int length) const;
    QByteArray recordType() const;
    QByteArray first() const; ///< character of the line
    QByteArray isBlank() const;
    QByteArray isWide() const; ///< not ASCII

private:
    const LoadPlan &plan;
    LinePieces division;
    QByteArray p;
    QVector<QByteArray> names;
};

} // namespace vanlayout

#endif
