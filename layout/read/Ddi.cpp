#include "read/DdiAssembly_p.h"
#include "read/DdiParser_p.h"
#include "read/Formats_p.h"

#include "read/CSProCommon_p.h"

namespace vanlayout
{

namespace
{

// The beginning of the bytes without a byte-order mark, white space, and the zeros of UTF-16.
QByteArray beginOf(const QByteArray &head)
{
    QByteArray begin;
    if (head.startsWith("\xff\xfe") || head.startsWith("\xfe\xff") || head.startsWith(QByteArray("<\0", 2))
        || head.startsWith(QByteArray("\0<", 2))) {
        begin = head.startsWith('<') || head.startsWith('\0') ? head : head.mid(2);
        begin.replace(QByteArray(1, '\0'), QByteArray());
    } else {
        begin = head.startsWith("\xef\xbb\xbf") ? head.mid(3) : head;
    }
    return begin.trimmed();
}

bool isLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_';
}

bool isHtml(const QByteArray &begin)
{
    const QByteArray lower = begin.left(int(qstrlen("<!doctype html"))).toLower();
    return lower.startsWith("<!doctype html") || lower.startsWith("<html");
}

void failWith(const ddi::Xml &xml, bool hasRoot, Diagnostics &diagnostics)
{
    const bool isUnknown = !hasRoot && QLatin1String(xml.problemId()) == QLatin1String("not-well-formed");
    if (isUnknown)
        diagnostics.fail("unknown-format", QStringLiteral("the file begins like XML, but %1").arg(xml.problem()),
                         xml.problemLine());
    else
        diagnostics.fail(xml.problemId(), xml.problem(), xml.problemLine());
}

void failWithRoot(const QString &root, int line, Diagnostics &diagnostics)
{
    diagnostics.fail(
        "unknown-format",
        QStringLiteral("the file is an XML document with the root %1, not a layout; a layout is one of DDI "
                       "Codebook, with the root codeBook")
            .arg(cspro::quoted(root)),
        line);
}

void reportText(const ddi::Xml &xml, Diagnostics &diagnostics)
{
    if (xml.badLine() > 0)
        diagnostics.warn("bad-bytes",
                         QStringLiteral("the text has bytes that are not valid in its encoding; they were replaced by "
                                        "U+FFFD"),
                         { xml.badLine(), QString() });
    if (!xml.unresolvedEntity().isEmpty())
        diagnostics.warn("unresolved-entity",
                         QStringLiteral("the text has entities of a document type definition elsewhere, such as %1, "
                                        "which stay as they are; replace them by their text")
                             .arg(cspro::quoted(xml.unresolvedEntity())));
}

} // namespace

bool isDdi(const QByteArray &head)
{
    const QByteArray begin = beginOf(head);
    const char second = begin.size() > 1 ? begin.at(1) : '\0';
    return begin.startsWith('<') && (second == '?' || second == '!' || isLetter(second)) && !isHtml(begin);
}

void readDdi(Input &input, Layout &layout, Diagnostics &diagnostics)
{
    ddi::Xml xml(input.device, input.head);
    const bool hasRoot = xml.problem().isEmpty() && xml.nextChild();
    const QString root = hasRoot ? xml.name() : QString();
    if (hasRoot && root != QLatin1String("codeBook")) {
        failWithRoot(root, xml.line(), diagnostics);
        return;
    }
    ddi::Content content;
    if (hasRoot)
        content = ddi::readCodeBook(xml);
    if (!xml.problem().isEmpty()) {
        failWith(xml, hasRoot, diagnostics);
        return;
    }
    layout.encoding = xml.encoding();
    reportText(xml, diagnostics);
    ddi::assemble(std::move(content), layout, diagnostics);
}

} // namespace vanlayout
