#include "read/Diagnostics_p.h"

#include <utility>

namespace vanlayout
{

void Diagnostics::warn(const char *id, const QString &message, const Place &place)
{
    add(Severity::Warning, id, message, place);
}

void Diagnostics::inform(const char *id, const QString &message, const Place &place)
{
    add(Severity::Info, id, message, place);
}

void Diagnostics::fail(const char *id, const QString &message, int line)
{
    Layout failed;
    failed.file = std::move(layout.file);
    failed.problems.append({ Severity::Error, QLatin1String(id), line, QString(), message });
    layout = std::move(failed);
}

void Diagnostics::addExtra(const Place &place, const QString &key, const QString &value)
{
    if (layout.extras.size() < maxExtras) {
        layout.extras.append({ place.path, key, value, place.line });
    } else if (!hasTooManyExtras) {
        hasTooManyExtras = true;
        warn("too-many-extras",
             QStringLiteral("more than %1 statements have no member in the layout; further ones are not kept")
                 .arg(maxExtras),
             place);
    }
}

void Diagnostics::add(Severity severity, const char *id, const QString &message, const Place &place)
{
    const int count = layout.problems.size();
    if (count < maxProblems)
        layout.problems.append({ severity, QLatin1String(id), place.line, place.path, message });
    else if (count == maxProblems)
        layout.problems.append(
            { Severity::Warning, QStringLiteral("too-many-problems"), place.line, place.path,
              QStringLiteral("more than %1 problems; further ones are not reported").arg(maxProblems) });
}

} // namespace vanlayout
