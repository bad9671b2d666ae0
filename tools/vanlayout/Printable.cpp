#include "Printable.h"

#include "LocaleText.h"
#include "Progress.h"

#include <algorithm>
#include <cstdio>

namespace
{

bool isIn(ushort code, ushort first, ushort last)
{
    return code >= first && code <= last;
}

// Marks, embeddings, overrides and isolates, which change the display order of the characters around them.
bool isBidirectionalControl(ushort code)
{
    return code == 0x061C || isIn(code, 0x200E, 0x200F) || isIn(code, 0x202A, 0x202E) || isIn(code, 0x2066, 0x2069);
}

bool isControl(QChar unit)
{
    const ushort code = unit.unicode();
    return code < 0x20 || (code >= 0x7F && (code <= 0x9F || isBidirectionalControl(code)));
}

// The control characters of ASCII have their own pictures.
QChar signFor(QChar control)
{
    const ushort code = control.unicode();
    if (code < 0x20)
        return QChar(0x2400 + code);
    return code == 0x7F ? QChar(0x2421) : QChar(QChar::ReplacementCharacter);
}

} // namespace

QString printable(const QString &text)
{
    const auto *const first = std::find_if(text.cbegin(), text.cend(), isControl);
    if (first == text.cend())
        return text;
    QString shown = text;
    std::transform(first, text.cend(), shown.begin() + (first - text.cbegin()),
                   [](QChar unit) { return isControl(unit) ? signFor(unit) : unit; });
    return shown;
}

void printToStandardError(const QString &line)
{
    const QByteArray bytes = toLocale(printable(line)) + '\n';
    writeWithoutProgress([&] { std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr); });
}
