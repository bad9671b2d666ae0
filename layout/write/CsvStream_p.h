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
    /// \a target is open for writing and must outlive this object. With \a guarded, a text that a spreadsheet would
    /// evaluate as a formula is prefixed with an apostrophe: it begins with `=`, `+`, `-`, `@`, a tab or a line break,
    /// and is not a number.
    CsvStream(QIODevice &target, bool guarded);

    void byteOrderMark() { buffer += "\xEF\xBB\xBF"; }
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
    bool isGuarded = false;
    bool isWhole = true;
};

} // namespace vanlayout

#endif
