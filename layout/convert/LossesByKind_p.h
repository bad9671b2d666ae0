#ifndef LAYOUT_CONVERT_LOSSESBYKIND_P_H
#define LAYOUT_CONVERT_LOSSESBYKIND_P_H

#include "write/Loss.h"

#include <QStringList>

#include <algorithm>

namespace vanlayout
{

/// The names of the variables for which something is lost, for each kind of statement.
class LossesByKind
{
public:
    void add(const QString &what, const QString &variable)
    {
        const auto kind
            = std::find_if(kinds.begin(), kinds.end(), [&](const Kind &known) { return known.what == what; });
        if (kind != kinds.end())
            kind->variables.append(variable);
        else
            kinds.append({ what, { variable } });
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
};

} // namespace vanlayout

#endif
