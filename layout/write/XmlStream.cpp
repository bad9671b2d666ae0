#include "XmlStream_p.h"

#include "LanguageTag_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr ushort firstPicture = 0x2400; // the signs of the control characters, in their order
constexpr int flushedSize = 1 << 16;

bool isHeldByXml(QChar unit)
{
    const ushort code = unit.unicode();
    if (code < 0x20)
        return code == '\t' || code == '\n';
    return code < 0xFFFE && !unit.isSurrogate();
}

QChar visibleSign(QChar unit)
{
    return unit.unicode() < 0x20 ? QChar(firstPicture + unit.unicode()) : QChar(QChar::ReplacementCharacter);
}

bool isPair(const QString &text, int index)
{
    return text.at(index).isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate();
}

QString withSigns(QString text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (isPair(text, i))
            ++i;
        else if (!isHeldByXml(text.at(i)))
            text[i] = visibleSign(text.at(i));
    }
    return text;
}

} // namespace

QString xmlText(const QString &text)
{
    return std::all_of(text.begin(), text.end(), isHeldByXml) ? text : withSigns(text);
}

XmlStream::XmlStream(QIODevice &target)
    : device(target)
    , xml(&buffer)
{
    buffer.buffer().reserve(2 * flushedSize);
    buffer.open(QIODevice::WriteOnly);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
}

bool XmlStream::endDocument()
{
    xml.writeEndDocument();
    flush();
    return isWhole;
}

void XmlStream::end()
{
    xml.writeEndElement();
    if (buffer.size() >= flushedSize)
        flush();
}

void XmlStream::attributeIfAny(const QString &name, const QString &value)
{
    if (!value.isEmpty())
        attribute(name, value);
}

void XmlStream::language(const QString &code)
{
    attributeIfAny(QStringLiteral("xml:lang"), tags.of(code));
}

void XmlStream::textElementIfAny(const QString &element, const QString &text)
{
    if (!text.isEmpty())
        textElement(element, text);
}

void XmlStream::flush()
{
    isWhole = isWhole && device.write(buffer.data()) == buffer.size();
    buffer.buffer().resize(0);
    buffer.seek(0);
}

} // namespace vanlayout
