#ifndef VANLAYOUT_TABLELINES_H
#define VANLAYOUT_TABLELINES_H

#include <QIODevice>
#include <QString>
#include <QStringList>

/// Lines of a table on a device, which are wrapped to the width of the terminal. All pass through printable().
class TableLines
{
public:
    /// \a columns is the width of the terminal, 0 for no limit.
    TableLines(QIODevice &device, int columns)
        : out(device)
        , width(columns)
    {
    }

    /// Prints a text with the indentation of a level, wrapped at blanks.
    void print(int depth, const QString &text) { print(depth, text.split(QLatin1Char(' '))); }
    /// Prints words, which are not broken, with a blank between them.
    void print(int depth, const QStringList &words);
    /// Prints a line as it is, without wrapping.
    void printWhole(const QString &line) { write(line); }
    void printEmpty() { write(QString()); }
    /// Whether a text needs no second line at this depth.
    bool fits(int depth, const QString &text) const;

private:
    void write(QString line);

    QIODevice &out;
    int width;
};

#endif
