#ifndef LAYOUT_WRITE_XMLSTREAM_P_H
#define LAYOUT_WRITE_XMLSTREAM_P_H

#include "model/Layout.h"
#include "write/LanguageTag_p.h"

#include <QIODevice>
#include <QXmlStreamWriter>

#include <array>

namespace vanlayout
{

/// The text with a sign in place of each character that XML cannot hold: the picture of a control character (U+2400
/// and following), U+FFFD for half of a surrogate pair, U+FFFE and U+FFFF. A carriage return, which a parser would
/// change, has its picture too; tab and line feed stay.
QString xmlText(const QString &text);

/// Hands bytes on to a device in large parts: the XML writer has a few bytes at a time.
class OutputBuffer : public QIODevice
{
public:
    /// \a device is open for writing and outlives this object.
    explicit OutputBuffer(QIODevice &device);

    /// Hands the rest on. False if the device refused something.
    bool flush();

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *bytes, qint64 size) override;

private:
    QIODevice &target;
    std::array<char, 1 << 16> buffer;
    size_t used = 0;
    bool isWhole = true;
};

/// Writes an XML document onto a device, through a buffer. All texts go through xmlText().
class XmlStream
{
public:
    /// \a target is open for writing and outlives this object.
    explicit XmlStream(QIODevice &target);

    void beginDocument() { xml.writeStartDocument(); }
    /// False if the device refused something.
    bool endDocument();

    void begin(const QString &element) { xml.writeStartElement(element); }
    void end() { xml.writeEndElement(); }
    /// The next attributes belong to this element, which has no content.
    void empty(const QString &element) { xml.writeEmptyElement(element); }
    void defaultNamespace(const QString &uri) { xml.writeDefaultNamespace(uri); }

    void attribute(const QString &name, const QString &value) { xml.writeAttribute(name, xmlText(value)); }
    void attribute(const QString &name, qint64 value) { xml.writeAttribute(name, QString::number(value)); }
    void attributeIfAny(const QString &name, const QString &value);
    /// `xml:lang`, where the code of the language is one that XML can hold.
    void language(const QString &code);

    void content(const QString &text) { xml.writeCharacters(xmlText(text)); }
    void textElement(const QString &element, const QString &text) { xml.writeTextElement(element, xmlText(text)); }
    void textElement(const QString &element, qint64 number) { xml.writeTextElement(element, QString::number(number)); }
    void textElementIfAny(const QString &element, const QString &text);

private:
    OutputBuffer output;
    QXmlStreamWriter xml;
    LanguageTags tags;
};

} // namespace vanlayout

#endif
