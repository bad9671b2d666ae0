#include "ProgramText_p.h"

#include <QFile>

#include <algorithm>
#include <cstring>

namespace vanlayout
{

namespace
{

constexpr int lineWidth = 100; // bytes

// \a place begins with the name, and `>>` after it.
const QByteArray &valueAt(const char *place, PartValues values)
{
    const auto isNamed = [&](const PartValue &value) {
        const size_t length = qstrlen(value.first);
        return std::strncmp(place, value.first, length) == 0 && std::strncmp(place + length, ">>", 2) == 0;
    };
    const PartValues::const_iterator found = std::find_if(values.begin(), values.end(), isNamed);
    Q_ASSERT(found != values.end());
    return found->second;
}

bool isAbsolute(const QString &path)
{
    const bool hasDrive = path.size() > 1 && path.at(1) == QLatin1Char(':') && path.at(0).isLetter();
    return hasDrive || path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1Char('\\'));
}

} // namespace

QByteArray readPart(const char *name)
{
    QFile file(QStringLiteral(":/vanlayout/load/") + QLatin1String(name));
    const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isOpen);
    Q_UNUSED(isOpen)
    return file.readAll();
}

QByteArray filledPart(const QByteArray &part, PartValues values)
{
    QByteArray text;
    int size = part.size();
    for (const PartValue &value : values)
        size += value.second.size();
    text.reserve(size);
    int done = 0;
    for (int start = part.indexOf("<<"); start >= 0; start = part.indexOf("<<", done)) {
        text.append(part.constData() + done, start - done);
        text += valueAt(part.constData() + start + 2, values);
        done = part.indexOf(">>", start) + 2;
    }
    text.append(part.constData() + done, part.size() - done);
    return text;
}

QByteArray programPart(const char *name, PartValues values)
{
    return filledPart(readPart(name), values);
}

QByteArray wordLines(const QStringList &words, const QByteArray &indent)
{
    QByteArray lines;
    int width = 0;
    for (const QString &word : words) {
        const QByteArray bytes = word.toUtf8();
        const bool isNew = width > 0 && width + bytes.size() >= lineWidth;
        if (isNew)
            lines += '\n' + indent;
        else if (width > 0)
            lines += ' ';
        width = (isNew ? indent.size() : width + 1) + bytes.size();
        lines += bytes;
    }
    return lines;
}

QString safePath(const QString &path)
{
    const bool isMarked = path.startsWith(QLatin1String("./")) || path.startsWith(QLatin1String("../"));
    return isMarked || isAbsolute(path) ? path : QLatin1String("./") + path;
}

} // namespace vanlayout
