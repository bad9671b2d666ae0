#ifndef LAYOUT_WRITE_MARKDOWNSTREAM_P_H
#define LAYOUT_WRITE_MARKDOWNSTREAM_P_H

#include <QIODevice>
#include <QString>
#include <QStringList>

namespace vanlayout
{

/// Escapes a text of a file so that Markdown shows the same text on one line: characters with a meaning in Markdown or
/// HTML are escaped, a line break is `<br>`, other control characters are their pictures. Safe in a heading, in a cell
/// of a table, and after other words of a paragraph.
QString markdownText(const QString &text);

/// Writes Markdown onto a device, through a buffer. Lines and cells must be Markdown.
class MarkdownStream
{
public:
    /// \a target is open for writing and must outlive this object.
    explicit MarkdownStream(QIODevice &target);

    /// A heading, followed by an empty line. \a level is 1-based.
    void heading(int level, const QString &line);
    /// A paragraph of a text of a file; none for an empty one.
    void paragraph(const QString &text);
    /// A line of Markdown, unchanged.
    void line(const QString &markdown);
    /// The header of a table, and its cells.
    void tableHeader(const QStringList &cells);
    void tableRow(const QStringList &cells);
    /// The end of a table: an empty line.
    void endTable() { line(QString()); }
    /// Writes the rest; false if the device did not accept all bytes.
    bool end();

private:
    void flush();

    QIODevice &device;
    QString buffer;
    bool isWhole = true;
};

} // namespace vanlayout

#endif
