#include "RoundLines.h"

void RoundLines::print(const QString &heading, const QStringList &texts)
{
    QStringList absentIn;
    QStringList list;
    for (int begin = 0, end = 0; begin < texts.size(); begin = end) {
        end = begin + 1;
        const bool isAbsent = texts.at(begin) == absent();
        while (isAbsent && end < texts.size() && texts.at(end) == absent())
            ++end;
        const QString names = namesOf(begin, end - 1);
        if (isAbsent)
            absentIn.append(names);
        if (!texts.at(begin).isEmpty())
            list.append(names + QLatin1String(": ") + texts.at(begin));
    }
    if (!list.isEmpty() && absentIn.size() == list.size()) {
        lines.print(0, heading + QLatin1String(": absent in ") + absentIn.join(QLatin1String(", ")));
        return;
    }
    lines.print(0, heading);
    for (const QString &line : qAsConst(list))
        lines.print(1, line);
}

QString RoundLines::namesOf(int first, int last) const
{
    return first == last ? rounds.at(first) : rounds.at(first) + QLatin1String(" to ") + rounds.at(last);
}
