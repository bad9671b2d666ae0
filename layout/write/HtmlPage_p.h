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

/// A page of one file: nothing beside it is loaded, and nothing runs but its own style and script, which its
/// Content-Security-Policy names by their hashes.
///
/// The template has names in double braces. `policy`, `style`, `script` and `version` are known here; all others are
/// pieces of the page.
class HtmlPage
{
public:
    /// Names of resources of the library; the styles become one, and so do the scripts.
    HtmlPage(const QString &templateName, const QStringList &styleNames, const QStringList &scriptNames);

    /// \a writePiece writes the piece with a name; false where the device refused something.
    using PieceWriter = std::function<bool(const QByteArray &name, QIODevice &device)>;

    /// Streams the page onto \a device. False if the device refused something.
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

/// Whether all bytes were taken.
bool writeBytes(QIODevice &device, const QByteArray &bytes);

/// A text of a file as HTML, for an element or an attribute in quotes. A character that shows nothing or that HTML
/// forbids is an escape such as `\u001b`, as the script of a page shows it.
QByteArray htmlOf(const QString &text);

/// A number with commas between its thousands, as the script of a page writes it.
QByteArray groupedNumber(qint64 number);

/// Whether a character can be itself in a JSON text within a script element: it cannot end the element, and HTML and
/// UTF-8 allow it.
bool isPlainInScript(QChar unit);

/// The JSON string of a text with an escape in place of each character that is not plain in a script element.
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
