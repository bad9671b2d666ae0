#include "import/LayoutNotes_p.h"

#include "util/KeyedHash_p.h"
#include "util/Numbers_p.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>

void reportRepeatedNames(ReadReport &report, const QList<TGenericField *> *fields, size_t differentNames)
{
    if (!fields || size_t(fields->size()) == differentNames)
        return;
    KeyedSet<QString> names;
    names.reserve(differentNames);
    for (const TGenericField *field : qAsConst(*fields)) {
        if (field && !names.insert(field->name).second) // LCOV_EXCL_BR_LINE: no reader adds a null field
            report.add(NoteKind::duplicateVariable, field->name, 0, field->name);
    }
}

bool isWrittenInFull(double number)
{
    const QString text = numbers::toText(number);
    // A number below 1 loses no digit to its exponent.
    return numbers::toDouble(text) == number && (std::abs(number) < 1 || !text.contains(QLatin1Char('e')));
}

bool reportMissingFile(ReadReport &report, const QString &path)
{
    const QFileInfo info(path);
    QFile file(path);
    const bool canBeRead = !info.isDir() && (!info.isFile() || file.open(QIODevice::ReadOnly));
    if (info.exists() && canBeRead)
        return false;
    report.add(NoteKind::fileNotRead, path);
    return true;
}
