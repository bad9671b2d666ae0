#ifndef LAYOUT_WRITE_HTMLPAGE_P_H
#define LAYOUT_WRITE_HTMLPAGE_P_H

#include "write/JsonStream_p.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <QStringList>

#include <functional>

namespace vanlayout
{

/// A self-contained HTML page. Its Content-Security-Policy allows only its own style and script, by their hashes.
///
/// The template contains names in double braces. `policy`, `style`, `script` and `version` are replaced by this class;
/// all other names are replaced by pieces that the caller writes.
class HtmlPage
{
public:
    /// Names of resources of the library; styles are concatenated, as are scripts.
    HtmlPage(const QString &templateName, const QStringList &styleNames, const QStringList &scriptNames);

    /// Writes the piece with a name; returns false if the device did not accept all bytes.
    using PieceWriter = std::function<bool(const QByteArray &name, QIODevice &device)>;

    /// Streams the page onto \a device. False if the device did not accept all bytes.
    bool write(QIODevice &device, const PieceWriter &writePiece) const;

private:
    bool writeNamed(const QByteArray &name, QIODevice &device, const PieceWriter &writePiece) const;
    QByteArray policy() const;

    QByteArray content;
    QByteArray style;
    QByteArray script;
};

/// The content of a resource of the library, such as "codebook/page.css".
QByteArray libraryResource(const QString &name);

/// Writes all bytes; false if the device did not accept them.
bool writeBytes(QIODevice &device, const QByteArray &bytes);

/// Escapes a text of a file for an HTML element or a quoted attribute. An invisible character or one that HTML forbids
/// is shown as an escape such as `\u001b`, like in the script of a page.
QByteArray htmlOf(const QString &text);

/// A number with commas as thousands separators, as written by the script of a page.
QByteArray groupedNumber(qint64 number);

/// True if a character needs no escape in JSON within a script element: it cannot end the element, and HTML and UTF-8
/// allow it.
bool isPlainInScript(QChar unit);

/// The JSON string of a text, with escapes for all characters that are not plain in a script element.
QByteArray escapedForScript(const QString &text);

/// Writes a text as a JSON string that can be part of a script element.
template <typename Json> void writeScriptString(Json &json, const QString &text)
{
    if (std::all_of(text.begin(), text.end(), isPlainInScript)) {
        const QByteArray utf8 = text.toUtf8();
        json.String(utf8.constData(), rapidjson::SizeType(utf8.size()));
    } else {
        const QByteArray literal = escapedForScript(text);
        json.RawValue(literal.constData(), size_t(literal.size()), rapidjson::kStringType);
    }
}

} // namespace vanlayout

#endif
