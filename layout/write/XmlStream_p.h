#ifndef LAYOUT_WRITE_XMLSTREAM_P_H
#define LAYOUT_WRITE_XMLSTREAM_P_H

#include "model/Layout.h"
#include "write/LanguageTag_p.h"

#include <QIODevice>
#include <QXmlStreamWriter>

#include <array>

namespace vanlayout
{

/// The text with a visible character in place of each character that XML cannot represent: the picture of a control
/// character (U+2400 and following), U+FFFD for half of a surrogate pair, U+FFFE and U+FFFF. A carriage return, which a
/// parser would change, is also replaced by its picture; tab and line feed remain.
QString xmlText(const QString &text);

/// Passes bytes to a device in large blocks, because the XML writer writes a few bytes at a time.
class OutputBuffer : public QIODevice
{
public:
    /// \a device is open for writing and must outlive this object.
    explicit OutputBuffer(QIODevice &device);

    /// Writes the remaining bytes. Returns false if the device did not accept all bytes.
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
    /// \a target is open for writing and must outlive this object.
    explicit XmlStream(QIODevice &target);

    void beginDocument() { xml.writeStartDocument(); }
    /// Ends the document and writes the remaining bytes. Returns false if the device did not accept all bytes.
    bool endDocument();

    void begin(const QString &element) { xml.writeStartElement(element); }
    void end() { xml.writeEndElement(); }
    /// Begins an element without content, which the next attributes belong to.
    void empty(const QString &element) { xml.writeEmptyElement(element); }
    void defaultNamespace(const QString &uri) { xml.writeDefaultNamespace(uri); }

    void attribute(const QString &name, const QString &value) { xml.writeAttribute(name, xmlText(value)); }
    void attribute(const QString &name, qint64 value) { xml.writeAttribute(name, QString::number(value)); }
    void attributeIfAny(const QString &name, const QString &value);
    /// Writes `xml:lang` if the code of the language has a language tag.
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
