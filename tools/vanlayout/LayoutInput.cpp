#include "LayoutInput.h"

#include "Answer.h"

#include <QFile>
#include <QStringList>

#include <cstdio>

vanlayout::Layout readExactLayout(const QString &file, const vanlayout::ReadOptions &options)
{
    if (file != QLatin1String("-"))
        return vanlayout::readLayout(file, options);
    QFile input;
    input.open(stdin, QIODevice::ReadOnly);
    return vanlayout::readLayout(input, file, options);
}

QString messageOf(const vanlayout::Problem &problem)
{
    if (problem.line == 0)
        return problem.message;
    return QStringLiteral("line %1: %2").arg(problem.line).arg(problem.message);
}

void complainIfReadInPart(const vanlayout::Layout &layout)
{
    for (const vanlayout::Problem &problem : layout.problems) {
        if (problem.id == QLatin1String("reading-ended") || problem.id == QLatin1String("catalog-not-read"))
            complainOfFile(layout.file, problem.message);
    }
}

QString problemWithLanguage(const vanlayout::Layout &layout, const QString &language)
{
    QStringList names;
    for (const vanlayout::Language &declared : layout.languages)
        names.append(declared.name);
    if (language.isEmpty() || names.isEmpty() || names.contains(language, Qt::CaseInsensitive))
        return QString();
    return QStringLiteral("has no language %1; it has %2").arg(language, names.join(QLatin1String(", ")));
}
