#include "XmlStream_p.h"

#include "WriteAll_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr ushort firstPicture = 0x2400; // picture of U+0000; the others follow in the order of the characters

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

OutputBuffer::OutputBuffer(QIODevice &device)
    : target(device)
{
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool OutputBuffer::flush()
{
    isWhole = isWhole && writeAll(target, buffer.data(), qint64(used));
    used = 0;
    return isWhole;
}

// Accepts all bytes even if the device does not, because the XML writer would continue in any case. flush() returns the
// failure.
qint64 OutputBuffer::writeData(const char *bytes, qint64 size)
{
    for (qint64 done = 0; done < size;) {
        if (used == buffer.size())
            flush();
        const qint64 part = std::min(size - done, qint64(buffer.size() - used));
        std::copy_n(bytes + done, part, buffer.begin() + used);
        used += size_t(part);
        done += part;
    }
    return size;
}

XmlStream::XmlStream(QIODevice &target)
    : output(target)
    , xml(&output)
{
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
}

bool XmlStream::endDocument()
{
    xml.writeEndDocument();
    return output.flush();
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

} // namespace vanlayout
