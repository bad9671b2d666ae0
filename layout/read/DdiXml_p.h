#ifndef LAYOUT_READ_DDIXML_P_H
#define LAYOUT_READ_DDIXML_P_H

#include "read/DdiMarkup_p.h"

#include <QByteArray>
#include <QVector>
#include <QXmlStreamReader>

#include <memory>

class QIODevice;
class QTextDecoder;

namespace vanlayout::ddi
{

/// Decodes the bytes of an XML document block by block. The encoding is that of the byte-order mark, else that of the
/// XML declaration, else UTF-8. Invalid bytes become U+FFFD.
class XmlText
{
public:
    /// \a head are the first bytes of the document.
    explicit XmlText(const QByteArray &head);
    ~XmlText();
    Q_DISABLE_COPY(XmlText)

    /// Lower-case name of the encoding.
    const QString &encoding() const { return encodingName; }
    /// Whether the encoding is known. If it is not, nothing can be decoded.
    bool isKnown() const { return decode || decoder; }
    /// The text of the next block; characters that are split between blocks come with the second one. \a isLast is
    /// whether this is the last block.
    QString next(const QByteArray &block, bool isLast);
    /// Whether there were invalid bytes.
    bool isDamaged() const { return hasBadBytes; }

private:
    using Decode = QString (*)(const char *bytes, int size, bool *isDamaged);

    int wholeSize(const QByteArray &bytes) const;

    QString encodingName;
    Decode decode = nullptr;
    std::unique_ptr<QTextDecoder> decoder;
    QByteArray rest;
    bool isBegun = false;
    bool hasBadBytes = false;
};

/// Reads an XML document from a device in one pass, element by element, without recursion.
///
/// Entities are not expanded and no other file is opened: a document that declares entities is refused, and one of a
/// document type definition that is elsewhere stays as its name (`&eacute;`). After a problem the document has no
/// further elements. Names are without their prefixes, because documents use any.
class Xml
{
public:
    static constexpr int maxDepth = 256; ///< elements within each other

    /// \a source is open for reading, and \a head are its next bytes.
    Xml(QIODevice &source, const QByteArray &head);

    /// Goes to the next child of the current element, at the beginning to the root of the document. Returns false at
    /// the end of the current element, which is then left for its parent, or after a problem.
    bool nextChild();
    /// Leaves the current element. Its children are skipped.
    void skip();
    /// All text of the current element with that of its children, and leaves it. Line breaks around the text, with the
    /// blanks next to them, are indentation and no part of it.
    QString text();
    /// Continues within the current element to the next text, child, or end of a child or of the element itself.
    enum class Part { Text, Begin, End, Nothing };
    Part nextPart();
    /// Whether the element that begins or ends here is a paragraph, an item of a list, or the like: its text has lines
    /// of its own.
    bool isParagraph() const;
    /// The text of the last Part::Text.
    const QString &partText() const { return piece; }

    QString name() const;
    QString attribute(const char *wanted) const;
    QXmlStreamAttributes attributes() const { return reader.attributes(); }
    /// The `xml:lang` of the current element itself; empty if there is none.
    QString ownLanguage() const;
    /// The `xml:lang` of the current element or of the nearest one around it; empty if there is none.
    QString language() const { return languages.isEmpty() ? QString() : languages.constLast(); }
    int depth() const { return languages.size(); }
    /// The 1-based line of the current position.
    int line() const;

    const QString &encoding() const { return decoded.encoding(); }
    /// The 1-based line of the first invalid bytes; 0 if there are none.
    int badLine() const { return lineOfBadBytes; }
    /// The name of the first entity that was not expanded; empty if there is none.
    const QString &unresolvedEntity() const { return firstEntity; }

    /// The reason why the document cannot be read, as a predicate; empty if there is none.
    const QString &problem() const { return problemText; }
    /// The stable word of the problem.
    const char *problemId() const { return id; }
    int problemLine() const { return lineOfProblem; }

private:
    QXmlStreamReader::TokenType next();
    bool feed();
    void begin();
    void fail(const char *problemWord, const QString &problem, int lineNumber);

    QIODevice &device;
    XmlText decoded;
    MarkupScan markup;
    QXmlStreamReader reader;
    QVector<QString> languages; ///< of each open element
    QString piece;
    QString firstEntity;
    QString problemText;
    const char *id = "";
    int lineOfProblem = 0;
    int lineOfBadBytes = 0;
    qint64 bytesRead = 0;
    bool isAtEnd = false;
};

/// Begins a new line, unless the text is empty or at the begin of one.
void addBreak(QString &text);
/// The text without indentation around it: line breaks with the blanks next to them.
QString withoutIndentation(const QString &text);

} // namespace vanlayout::ddi

#endif
