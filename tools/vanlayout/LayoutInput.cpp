#include "LayoutInput.h"

#include <QFile>

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
