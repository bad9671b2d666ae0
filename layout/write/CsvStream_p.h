#ifndef LAYOUT_WRITE_CSVSTREAM_P_H
#define LAYOUT_WRITE_CSVSTREAM_P_H

#include <QByteArray>
#include <QIODevice>
#include <QString>

namespace vanlayout
{

/// Writes a CSV file (RFC 4180, UTF-8, CR LF) onto a device, through a buffer.
class CsvStream
{
public:
    /// A spreadsheet needs a byte-order mark, and evaluates a text as a formula if it begins with `=`, `+`, `-`, `@`, a
    /// tab or a line break and is not a number: it is prefixed with an apostrophe.
    enum class Reader { Program, Spreadsheet };

    /// \a target is open for writing and must outlive this object.
    CsvStream(QIODevice &target, Reader intendedReader);

    /// The encoded cell, followed by a comma; for cells that are shared by several lines.
    QByteArray cell(const QString &text) const;
    static QByteArray cell(int number) { return QByteArray::number(number) + ','; }
    /// Adds encoded cells.
    void add(const QByteArray &cells) { buffer += cells; }
    /// Ends the line: replaces its last comma by a line break.
    void endLine();
    /// Writes the rest; false if the device did not accept all bytes.
    bool end();

private:
    void flush();

    QIODevice &device;
    QByteArray buffer;
    Reader reader;
    bool isWhole = true;
};

} // namespace vanlayout

#endif
