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
    /// \a target is open for writing and outlives this object. With \a guarded, a text that a spreadsheet would run as
    /// a formula has an apostrophe in front: it begins with `=`, `+`, `-`, `@`, a tab or a line break, and is no
    /// number.
    CsvStream(QIODevice &target, bool guarded);

    void byteOrderMark() { buffer += "\xEF\xBB\xBF"; }
    /// The cell as it is written, with a comma behind it: cells that several lines begin with are made once.
    QByteArray cell(const QString &text) const;
    static QByteArray cell(int number) { return QByteArray::number(number) + ','; }
    /// Adds cells that are made already.
    void add(const QByteArray &cells) { buffer += cells; }
    /// Ends the line: its last comma is a line break.
    void endLine();
    /// Writes all; false if the device refused something.
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
