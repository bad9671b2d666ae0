#include "write/HtmlPage_p.h"

#include "vanlayout_version.h"

#include <QCryptographicHash>
#include <QFile>
#include <QLocale>

#include <algorithm>

// The macro requires a function outside of namespaces.
static void registerPageResources()
{
    Q_INIT_RESOURCE(codebook);
    Q_INIT_RESOURCE(concord);
    Q_INIT_RESOURCE(diff);
}

namespace vanlayout
{

namespace
{

// The source expression in a Content-Security-Policy that allows a content.
QByteArray hashSource(const QByteArray &content)
{
    return "'sha256-" + QCryptographicHash::hash(content, QCryptographicHash::Sha256).toBase64() + '\'';
}

QByteArray escapeOf(QChar unit)
{
    constexpr int digits = 4;
    constexpr int base = 16;
    return "\\u" + QByteArray::number(unit.unicode(), base).rightJustified(digits, '0');
}

bool isPlainInHtml(QChar unit)
{
    const ushort code = unit.unicode();
    return code >= ' ' && code < 0x7F && code != '<' && code != '>' && code != '&' && code != '"';
}

// Whether a page shows the character at an index as an escape.
bool isShownAsEscape(const QString &text, int at)
{
    const QChar unit = text.at(at);
    const ushort code = unit.unicode();
    if (unit.isHighSurrogate())
        return at + 1 == text.size() || !text.at(at + 1).isLowSurrogate();
    if (unit.isLowSurrogate())
        return at == 0 || !text.at(at - 1).isHighSurrogate();
    return code < ' ' || (code >= 0x7F && code < 0xA0) || code == QChar::LineSeparator
        || code == QChar::ParagraphSeparator || code >= 0xFFFE;
}

} // namespace

QByteArray libraryResource(const QString &name)
{
    registerPageResources();
    QFile file(QLatin1String(":/vanlayout/") + name);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

bool writeBytes(QIODevice &device, const QByteArray &bytes)
{
    return writeAll(device, bytes.constData(), bytes.size());
}

QByteArray htmlOf(const QString &text)
{
    // Nearly all texts need no escape in HTML.
    if (std::all_of(text.begin(), text.end(), isPlainInHtml))
        return text.toLatin1();
    QString shown;
    for (int at = 0; at < text.size(); ++at) {
        if (isShownAsEscape(text, at))
            shown += QLatin1String(escapeOf(text.at(at)));
        else
            shown += text.at(at);
    }
    return shown.toHtmlEscaped().toUtf8();
}

QByteArray groupedNumber(qint64 number)
{
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(number).toLatin1();
}

bool isPlainInScript(QChar unit)
{
    const ushort code = unit.unicode();
    if (code < 0xA0)
        return code >= ' ' && code < 0x7F && code != '<' && code != '>' && code != '&';
    return code != QChar::LineSeparator && code != QChar::ParagraphSeparator && !unit.isSurrogate() && code < 0xFFFE;
}

QByteArray escapedForScript(const QString &text)
{
    QString literal(1, QLatin1Char('"'));
    for (const QChar unit : text) {
        if (isPlainInScript(unit) && unit != QLatin1Char('"') && unit != QLatin1Char('\\'))
            literal += unit;
        else
            literal += QLatin1String(escapeOf(unit));
    }
    literal += QLatin1Char('"');
    return literal.toUtf8();
}

HtmlPage::HtmlPage(const QString &templateName, const QStringList &styleNames, const QStringList &scriptNames)
    : content(libraryResource(templateName))
    , script("\"use strict\";\n(() => {\n")
{
    for (const QString &name : styleNames)
        style += libraryResource(name);
    for (const QString &name : scriptNames)
        script += libraryResource(name);
    script += "})();\n";
}

bool HtmlPage::write(QIODevice &device, const PieceWriter &writePiece) const
{
    int done = 0;
    for (int open = content.indexOf("{{"); open >= 0; open = content.indexOf("{{", done)) {
        const int close = content.indexOf("}}", open);
        if (!writeBytes(device, content.mid(done, open - done))
            || !writeNamed(content.mid(open + 2, close - open - 2), device, writePiece))
            return false;
        done = close + 2;
    }
    return writeBytes(device, content.mid(done));
}

bool HtmlPage::writeNamed(const QByteArray &name, QIODevice &device, const PieceWriter &writePiece) const
{
    if (name == "policy")
        return writeBytes(device, policy());
    if (name == "style")
        return writeBytes(device, style);
    if (name == "script")
        return writeBytes(device, script);
    if (name == "version")
        return writeBytes(device, VANLAYOUT_VERSION_STRING);
    return writePiece(name, device);
}

QByteArray HtmlPage::policy() const
{
    return "default-src 'none'; style-src " + hashSource(style) + "; script-src " + hashSource(script)
        + "; base-uri 'none'; form-action 'none'";
}

} // namespace vanlayout
