#ifndef LAYOUT_CONVERT_LOSSESBYKIND_P_H
#define LAYOUT_CONVERT_LOSSESBYKIND_P_H

#include "load/PlanTexts_p.h"
#include "model/Layout.h"
#include "util/KeyedHash_p.h"
#include "write/Loss.h"

#include <QStringList>

namespace vanlayout
{

/// The loss of a statement for which there is no member, with the beginning of its value.
inline Loss lossOf(const Extra &extra)
{
    constexpr int longest = 60;
    const QString value = oneLine(extra.value);
    const QString begin = value.size() > longest ? cutTo(value, { longest }) + QStringLiteral("...") : value;
    const QString what = QStringLiteral("the statement \"%1\"").arg(extra.key);
    return { extra.path, begin.isEmpty() ? what : what + QStringLiteral(": ") + begin };
}

/// The names of the variables for which something is lost, for each kind of statement.
class LossesByKind
{
public:
    void add(const QString &what, const QString &variable)
    {
        const auto [place, isNew] = places.emplace(what, int(kinds.size()));
        if (isNew)
            kinds.append({ what, {} });
        QStringList &variables = kinds[place->second].variables;
        if (variables.isEmpty() || variables.constLast() != variable)
            variables.append(variable);
    }
    void appendTo(Losses &losses) const
    {
        for (const Kind &kind : kinds)
            losses.append({ QString(), kind.what + QStringLiteral(" of ") + kind.variables.join(QLatin1String(", ")) });
    }

private:
    struct Kind {
        QString what;
        QStringList variables;
    };
    QVector<Kind> kinds;
    KeyedMap<QString, int> places; // in `kinds`
};

} // namespace vanlayout

#endif
