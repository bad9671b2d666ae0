#include "model/Problem.h"

#include <tuple>

namespace vanlayout
{

QString wordOf(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return QStringLiteral("error");
    case Severity::Warning:
        return QStringLiteral("warning");
    case Severity::Info:
        break;
    }
    return QStringLiteral("info");
}

bool operator==(const Problem &left, const Problem &right)
{
    return std::tie(left.severity, left.id, left.line, left.path, left.message)
        == std::tie(right.severity, right.id, right.line, right.path, right.message);
}

} // namespace vanlayout
