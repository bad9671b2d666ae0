#ifndef LAYOUT_WRITE_MARKDOWNSTREAM_P_H
#define LAYOUT_WRITE_MARKDOWNSTREAM_P_H

#include <QIODevice>
#include <QString>
#include <QStringList>

namespace vanlayout
{

/// A text of a file as Markdown that shows the same text, in one line: what Markdown or HTML would act on is escaped, a
/// line break is `<br>`, other control characters are their pictures. Safe in a heading, in a cell of a table, and
/// behind other words of a paragraph.
QString markdownText(const QString &text);

/// Writes Markdown onto a device, through a buffer. Lines and cells are Markdown already.
class MarkdownStream
{
public:
    /// \a target is open for writing and outlives this object.
    explicit MarkdownStream(QIODevice &target);

    /// A heading, with an empty line behind it. \a level counts from 1.
    void heading(int level, const QString &line);
    /// A paragraph of a text of a file; none for an empty one.
    void paragraph(const QString &text);
    /// A line of Markdown, as it is.
    void line(const QString &markdown);
    /// The header of a table, and its cells.
    void tableHeader(const QStringList &cells);
    void tableRow(const QStringList &cells);
    /// The end of a table: an empty line.
    void endTable() { line(QString()); }
    /// Writes all; false if the device refused something.
    bool end();

private:
    void flush();

    QIODevice &device;
    QString buffer;
    bool isWhole = true;
};

} // namespace vanlayout

#endif
