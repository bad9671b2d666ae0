#include "read/DdiXml_p.h"

#include "read/CSProCommon_p.h"
#include "read/Decoding_p.h"

#include <QIODevice>
#include <QTextCodec>

#include <algorithm>

namespace vanlayout::ddi
{

namespace
{

constexpr int blockSize = 1 << 18;
constexpr qint64 maxSize = qint64(1) << 30;
constexpr int maxLanguage = 100; // characters, because each label has it

bool isSpace(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t') || character == QLatin1Char('\n');
}

// The encoding in the XML declaration; empty if it states none.
QByteArray declaredEncoding(const QByteArray &head)
{
    if (!head.startsWith("<?xml"))
        return QByteArray();
    const QByteArray declaration = head.left(head.indexOf("?>"));
    const int word = int(declaration.indexOf("encoding"));
    if (word < 0)
        return QByteArray();
    const int begin = int(declaration.indexOf('=', word)) + 1;
    const QByteArray value = declaration.mid(begin).trimmed();
    const int end = value.isEmpty() ? -1 : int(value.indexOf(value.at(0), 1));
    return begin > 0 && end > 0 ? value.mid(1, end - 1).trimmed().toLower() : QByteArray();
}

// Whether each character has several bytes. A declaration that could be read does not have such an encoding: programs
// that keep documents as texts in UTF-16 write its name into files of UTF-8.
bool isOfSeveralBytes(const QByteArray &encoding)
{
    const QByteArray begins[] = { "utf-16", "utf-32", "ucs-2", "ucs-4", "iso-10646-ucs-" };
    return std::any_of(std::begin(begins), std::end(begins),
                       [&](const QByteArray &begin) { return encoding.startsWith(begin); });
}

QByteArray encodingOf(const QByteArray &head)
{
    if (head.startsWith(QByteArray("\xff\xfe\0\0", 4)))
        return QByteArrayLiteral("utf-32le");
    if (head.startsWith("\xff\xfe") || head.startsWith(QByteArray("<\0", 2)))
        return QByteArrayLiteral("utf-16le");
    if (head.startsWith("\xfe\xff") || head.startsWith(QByteArray("\0<", 2)))
        return QByteArrayLiteral("utf-16be");
    const bool hasMark = head.startsWith("\xef\xbb\xbf");
    const QByteArray declared = hasMark ? QByteArray() : declaredEncoding(head);
    return declared.isEmpty() || declared == "us-ascii" || declared == "utf8" || isOfSeveralBytes(declared)
        ? QByteArrayLiteral("utf-8")
        : declared;
}

int breaksBeforeBadBytes(const QString &text)
{
    const int end = std::max(int(text.indexOf(QChar(QChar::ReplacementCharacter))), 0);
    return int(std::count(text.begin(), text.begin() + end, QLatin1Char('\n')));
}

QString describe(const QXmlStreamReader &reader)
{
    return QStringLiteral("is not well-formed XML: %1").arg(reader.errorString().simplified());
}

} // namespace

XmlText::XmlText(const QByteArray &head)
{
    const QByteArray name = encodingOf(head);
    encodingName = QString::fromLatin1(name);
    if (name == "utf-8")
        decode = decoding::fromUtf8;
    else if (name == "utf-16le")
        decode = decoding::fromUtf16LE;
    else if (name == "utf-16be")
        decode = decoding::fromUtf16BE;
    else if (name == "windows-1252")
        decode = decoding::fromWindows1252;
    else if (const QTextCodec *codec = QTextCodec::codecForName(name))
        decoder.reset(codec->makeDecoder());
}

XmlText::~XmlText() = default;

QString XmlText::next(const QByteArray &block, bool isLast)
{
    QString text;
    if (decoder) {
        text = decoder->toUnicode(block);
        hasBadBytes = hasBadBytes || text.contains(QChar(QChar::ReplacementCharacter));
    } else {
        rest += block;
        const int size = isLast ? int(rest.size()) : wholeSize(rest);
        text = decode(rest.constData(), size, &hasBadBytes);
        rest.remove(0, size);
    }
    if (!isBegun && text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    isBegun = isBegun || !text.isEmpty();
    return text;
}

// The number of bytes up to the beginning of a character that may be split.
int XmlText::wholeSize(const QByteArray &bytes) const
{
    constexpr int longestCharacter = 4;
    const int size = int(bytes.size());
    if (decode == decoding::fromWindows1252)
        return size;
    if (decode != decoding::fromUtf8)
        return std::max(0, size - size % longestCharacter - longestCharacter) / 2 * 2;
    int end = size;
    const auto byteAt = [&](int index) { return static_cast<uchar>(bytes.at(index)); };
    while (end > 0 && size - end < longestCharacter && (byteAt(end - 1) & 0xC0U) == 0x80U)
        --end;
    const bool isLead = end > 0 && byteAt(end - 1) >= 0xC0U;
    return isLead ? end - 1 : size;
}

Xml::Xml(QIODevice &source, const QByteArray &head)
    : device(source)
    , decoded(head)
{
    reader.setNamespaceProcessing(false);
    if (!decoded.isKnown())
        fail("unknown-encoding", QStringLiteral("has the unknown encoding %1").arg(cspro::quoted(decoded.encoding())),
             1);
}

void Xml::fail(const char *problemWord, const QString &problem, int lineNumber)
{
    if (!problemText.isEmpty())
        return;
    id = problemWord;
    problemText = problem;
    lineOfProblem = lineNumber;
}

int Xml::line() const
{
    return int(reader.lineNumber());
}

// Passes the next block to the parser. Returns false at the end of the device, or if there is a problem.
bool Xml::feed()
{
    if (isAtEnd)
        return false;
    const QByteArray block = device.read(blockSize);
    char byte = 0;
    isAtEnd = block.isEmpty();
    if (isAtEnd && device.read(&byte, 1) < 0) {
        fail("cannot-read", QStringLiteral("cannot be read: %1").arg(device.errorString()), 0);
        return false;
    }
    bytesRead += block.size();
    if (bytesRead > maxSize) {
        fail("cannot-read", QStringLiteral("is larger than 1 GiB, which is the limit"), 0);
        return false;
    }
    const int line = markup.line();
    const QString text = decoded.next(block, isAtEnd);
    if (lineOfBadBytes == 0 && decoded.isDamaged())
        lineOfBadBytes = line + breaksBeforeBadBytes(text);
    if (!markup.accepts(text)) {
        fail("unsafe-xml", QLatin1String(markup.problem()), markup.line());
        return false;
    }
    reader.addData(text);
    return !isAtEnd || !text.isEmpty();
}

QXmlStreamReader::TokenType Xml::next()
{
    while (problemText.isEmpty()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement)
            begin();
        if (token != QXmlStreamReader::Invalid)
            return problemText.isEmpty() ? token : QXmlStreamReader::Invalid;
        if (reader.error() != QXmlStreamReader::PrematureEndOfDocumentError || !feed())
            fail("not-well-formed", describe(reader), line());
    }
    return QXmlStreamReader::Invalid;
}

void Xml::begin()
{
    const QXmlStreamAttributes all = reader.attributes();
    const QString inherited = language();
    const QString own = ownLanguage();
    const bool isStated = all.hasAttribute(QLatin1String("xml:lang")) || all.hasAttribute(QLatin1String("xml-lang"));
    languages.append(isStated ? own : inherited);
    if (own.size() > maxLanguage)
        fail("unsafe-xml", QStringLiteral("has a language of more than %1 characters").arg(maxLanguage), line());
    if (languages.size() > maxDepth)
        fail("too-deep", QStringLiteral("has more than %1 elements within each other").arg(maxDepth), line());
}

Xml::Part Xml::nextPart()
{
    for (;;) {
        switch (next()) {
        case QXmlStreamReader::StartElement:
            return Part::Begin;
        case QXmlStreamReader::EndElement:
            languages.removeLast();
            return Part::End;
        case QXmlStreamReader::Characters:
            piece = reader.text().toString();
            return Part::Text;
        case QXmlStreamReader::EntityReference:
            piece = QLatin1Char('&') + reader.name().toString() + QLatin1Char(';');
            if (firstEntity.isEmpty())
                firstEntity = piece;
            return Part::Text;
        case QXmlStreamReader::EndDocument:
        case QXmlStreamReader::Invalid:
            return Part::Nothing;
        default:
            break;
        }
    }
}

bool Xml::nextChild()
{
    for (;;) {
        const Part part = nextPart();
        if (part == Part::Begin)
            return true;
        if (part != Part::Text)
            return false;
    }
}

void Xml::skip()
{
    const int parent = depth() - 1;
    while (depth() > parent && nextPart() != Part::Nothing) { }
}

QString Xml::text()
{
    const int parent = depth() - 1;
    QString all;
    while (depth() > parent) {
        const Part part = nextPart();
        if (part == Part::Nothing)
            break;
        if (part == Part::Text)
            all += piece;
        else if (isParagraph())
            addBreak(all);
    }
    return withoutIndentation(all);
}

bool Xml::isParagraph() const
{
    const QLatin1String elements(" p div br li itm tr head h1 h2 h3 h4 h5 h6 ");
    return QString(elements).contains(QLatin1Char(' ') + name() + QLatin1Char(' '));
}

QString Xml::name() const
{
    const QString qualified = reader.qualifiedName().toString();
    return qualified.mid(qualified.indexOf(QLatin1Char(':')) + 1);
}

// Documents of version 1 may have the attribute `xml-lang` instead.
QString Xml::ownLanguage() const
{
    const QString language = attribute("xml:lang");
    return language.isEmpty() ? attribute("xml-lang") : language;
}

QString Xml::attribute(const char *wanted) const
{
    return reader.attributes().value(QLatin1String(wanted)).toString();
}

void addBreak(QString &text)
{
    if (!text.isEmpty() && !text.endsWith(QLatin1Char('\n')))
        text += QLatin1Char('\n');
}

QString withoutIndentation(const QString &text)
{
    const QChar *const data = text.constData();
    int begin = 0;
    int end = text.size();
    const auto hasBreak
        = [&](int from, int to) { return std::find(data + from, data + to, QLatin1Char('\n')) != data + to; };
    while (begin < end && isSpace(data[begin]))
        ++begin;
    if (begin == end)
        return hasBreak(0, end) ? QString() : text;
    while (isSpace(data[end - 1]))
        --end;
    if (!hasBreak(0, begin))
        begin = 0;
    if (!hasBreak(end, text.size()))
        end = text.size();
    return begin == 0 && end == text.size() ? text : text.mid(begin, end - begin);
}

} // namespace vanlayout::ddi
