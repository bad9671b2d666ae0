#ifndef VANLAYOUT_CSVLINE_H
#define VANLAYOUT_CSVLINE_H

#include <QString>
#include <QStringView>

#include <cstdio>

/// Writes a CSV file line by line (RFC 4180, UTF-8, CR LF). Cells are added in order; end() writes the line.
class CsvLine
{
public:
    explicit CsvLine(std::FILE *stream);

    /// Adds a cell, in quotation marks if necessary.
    void add(QStringView text);
    void add(int number);
    /// Adds "yes" or an empty cell.
    void addFlag(bool isSet);
    /// Adds several comma-separated cells that need no quotation marks.
    void addPlain(QLatin1String cells);
    /// Writes the line with the cells added so far.
    void end();

private:
    std::FILE *out;
    QString line; // keeps its capacity from line to line
};

#endif
